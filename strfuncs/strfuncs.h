// The face of the string functions. Formulas reach them through CExpress, which keeps their
// arguments; what a host can use by itself is the number-to-text conversion and the string node.

#pragma once

#include "strfuncs/number_to_text.h"
#include "strfuncs/string_node.h"
