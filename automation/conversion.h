// Numbers and texts of a host's VARIANTs into each other. The host's own texts are read and written
// as its locale has them, the library's as the formula language has them.

#pragma once

#include <windows.h>

#include <oaidl.h>

namespace morandel::automation {

// What a host gives, by value or by reference, as a value of that type. A text is no number where
// digits are grouped or anything is left over; a number becomes the shortest text without exponent
// that stands for it alone.
HRESULT from_host(VARIANT& to, VARIANTARG& from, VARTYPE type, LCID locale);

// What a method gives, for a host's variable of that type.
HRESULT to_host(VARIANT& to, VARIANT& from, VARTYPE type, LCID locale);

}  // namespace morandel::automation
