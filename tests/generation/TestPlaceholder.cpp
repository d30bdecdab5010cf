#include "generation/IconStyle.h"
