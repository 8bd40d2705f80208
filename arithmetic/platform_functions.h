// Functions of the C library, of arguments of any size; angles are in radians.

#pragma once

#include <cmath>

namespace morandel::platform {

#ifdef __MINGW32__
// This C library leaves angles to the processor, whose pi of 66 bits gives the sine of 3e9 with
// twelve digits, and that of 1e20 with none. What it computes in more than double precision comes
// out as elsewhere when rounded, but for one result in some thousands.
double sine(double angle);
double cosine(double angle);
double tangent(double angle);
using Computed = long double;
#else
inline double sine(double angle) { return std::sin(angle); }
inline double cosine(double angle) { return std::cos(angle); }
inline double tangent(double angle) { return std::tan(angle); }
using Computed = double;
#endif

inline double arc_sine(double x) { return static_cast<double>(std::asin(Computed{x})); }
inline double arc_cosine(double x) { return static_cast<double>(std::acos(Computed{x})); }
inline double arc_tangent(double x) { return static_cast<double>(std::atan(Computed{x})); }
inline double natural_logarithm(double x) { return static_cast<double>(std::log(Computed{x})); }
inline double decimal_logarithm(double x) { return static_cast<double>(std::log10(Computed{x})); }

}  // namespace morandel::platform
