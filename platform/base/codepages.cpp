#include "platform/base/codepages.h"
