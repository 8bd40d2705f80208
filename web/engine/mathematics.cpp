// Functions for which the C library of WebAssembly is a place off more often than others are:
// rounded once, from more places. They take the place of the C library's own.

#include <cmath>

namespace {

template <class Function>
double rounded(Function function, double x) {
    return static_cast<double>(function(static_cast<long double>(x)));
}

}  // namespace

extern "C" {

double sin(double x) { return rounded(sinl, x); }

double cos(double x) { return rounded(cosl, x); }

double tan(double x) { return rounded(tanl, x); }

double asin(double x) { return rounded(asinl, x); }

double acos(double x) { return rounded(acosl, x); }

double atan(double x) { return rounded(atanl, x); }

// By the natural logarithm of the mantissa, as other C libraries have it: to the same last place.
double log10(double x) {
    constexpr double tenth_logarithm = 4.34294481903251816668e-01;  // 1 / ln(10)
    constexpr double first_of_two = 3.01029995663611771306e-01;     // log10(2) is the sum
    constexpr double rest_of_two = 3.69423907715893078616e-13;
    if (!(x > 0.0) || std::isinf(x)) return std::log(x);
    int exponent = 0;
    double mantissa = std::frexp(x, &exponent);
    if (exponent > 0) {
        mantissa *= 2.0;
        --exponent;
    }
    const double rest = exponent * rest_of_two + tenth_logarithm * std::log(mantissa);
    return rest + exponent * first_of_two;
}

}  // extern "C"
