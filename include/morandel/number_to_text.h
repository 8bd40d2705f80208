// The number-to-text conversion behind r2s.

#pragma once

#include <string>

#include <morandel/errors.h>
#include <morandel/export.h>

namespace morandel {

// Writes x with at most so many decimals, without trailing zeros; -1 stands for all there are. The
// whole part has all its digits. Decimals are rounded at the fifteenth significant digit, below 1
// at the fourteenth decimal, and then cut off; a number just below a whole one loses them. What is
// to be rounded is rounded before, in a formula by r2s(preci(x, n), n). A negative number that
// reads as zero has no sign; infinities and NaN give "inf", "-inf", "nan".
//     number_to_text(123.456, 2, text)   // "123.45"
//     number_to_text(8.2 - 0.2, -1, text)   // "7", of 7.999999999999999
// Errors, which leave an empty text: not_positive (21) for decimals below -1, too_many_decimals
// (51) for more than 15.
MORANDEL_EXPORT ErrorNumber number_to_text(double x, int decimals, std::string& text);

}  // namespace morandel
