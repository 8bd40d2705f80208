// Gives the identifiers that the interface description states their one definition.

#include <initguid.h>

#include "morandel_com.h"
