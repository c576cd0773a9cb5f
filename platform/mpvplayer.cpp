#include "platform/mpvplayer.h"
