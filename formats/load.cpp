#include "formats/load.h"
