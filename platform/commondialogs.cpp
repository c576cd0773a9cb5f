#include "platform/commondialogs.h"
