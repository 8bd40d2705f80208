// What the library itself calls an error of the table. To hosts that is ErrorNumber, since Error is
// the exception of prepared formulas there.

#pragma once

#include <morandel/errors.h>

namespace morandel {

using Error = ErrorNumber;

}  // namespace morandel
