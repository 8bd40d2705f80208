// What products lose by rounding, without a fused operation.

#pragma once

namespace morandel {

// The number's upper half, of 26 bits.
inline double upper_half(double x) {
    const double shifted = x * 0x8000001p0;
    return shifted - (shifted - x);
}

// The exact product less the rounded one, where neither is next to the ends of the range.
inline double product_error(double a, double b, double product) {
    const double upper_a = upper_half(a);
    const double upper_b = upper_half(b);
    const double lower_a = a - upper_a;
    const double lower_b = b - upper_b;
    return ((upper_a * upper_b - product) + (upper_a * lower_b + lower_a * upper_b)) +
           lower_a * lower_b;
}

}  // namespace morandel
