#include "platform/keycodes.h"
