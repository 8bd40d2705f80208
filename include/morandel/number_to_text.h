// The number-to-text conversion behind r2s.

#pragma once

#include <string>

#include <morandel/errors.h>
#include <morandel/export.h>

namespace morandel {

// Writes x with at most so many decimals: built from fifteen significant digits, cut off and not
// rounded, without trailing zeros. -1 decimals stands for all there are. A negative number that
// reads as zero has no sign; infinities and NaN give "inf", "-inf", "nan".
//     number_to_text(123.456, 2, text)   // "123.45"
// Errors, which leave an empty text: not_positive (21) for decimals below -1, too_many_decimals
// (51) for more than 15.
MORANDEL_EXPORT ErrorNumber number_to_text(double x, int decimals, std::string& text);

}  // namespace morandel
