// The routines behind the functions that read further arguments.

#pragma once

#include "strfuncs/call.h"

namespace morandel {

// parts.cpp: parts of a text
Error strsub(Call& call);
Error strtrim(Call& call);
Error strtrims(Call& call);
Error strsubn(Call& call);
Error left(Call& call);
Error right(Call& call);

// joining.cpp: texts made of others
Error strcat(Call& call);
Error strreplace(Call& call);
Error strdelete(Call& call);
Error strinsert(Call& call);
Error strcase(Call& call);

// searching.cpp: positions and counts
Error strmismatch(Call& call);
Error strfind(Call& call);
Error strfindn(Call& call);
Error strlen(Call& call);

// conversions.cpp: numbers and texts into each other, and numbers of numbers
Error r2s(Call& call);
Error s2r(Call& call);
Error choose(Call& call);
Error preci(Call& call);
Error mod(Call& call);

}  // namespace morandel
