#include "tests/model/arithmetic.h"

#include <cmath>

// What the C library computes is nothing to compare.
#include "arithmetic/platform_functions.h"
#include "tests/model/words.h"

namespace model {
namespace {

namespace platform = morandel::platform;

constexpr double tangent_guard = 1e-05;
constexpr double radians_per_degree = 0.017453292519943295;
constexpr double pi = 3.141592653589793;
constexpr double half_pi = 1.5707963267948966;

double degrees(double radians) { return radians * 180.0 / pi; }

bool has_fraction(double value) {
    double whole = 0.0;
    return std::modf(value, &whole) != 0.0;
}

// The number's upper half, of 26 bits.
double upper_half(double x) {
    const double shifted = x * 0x8000001p0;
    return shifted - (shifted - x);
}

// The exact square less the rounded one.
double square_error(double x, double square) {
    const double upper = upper_half(x);
    const double lower = x - upper;
    return ((upper * upper - square) + 2.0 * upper * lower) + lower * lower;
}

// Whether what was lost by rounding is less than 3/8 of the last place. Anything that computes the
// same to within 5/8 of it then rounds to the same number.
bool rounds_clearly(double rounded, double error) {
    return rounded + error * (4.0 / 3.0) == rounded;
}

double library_power(double base, double exponent) {
#ifdef __MINGW32__
    // This C library multiplies whole powers up, with an error each time. Computed with more bits
    // and then rounded, they are what other systems give.
    return static_cast<double>(
        std::pow(static_cast<long double>(base), static_cast<long double>(exponent)));
#else
    // Compilers put a product or a root in the place of powers whose exponent they can tell.
    const volatile double hidden = exponent;
    return std::pow(base, hidden);
#endif
}

// C libraries compute powers to within 0.54 of the last place, and take ten times as long as a
// product or a root does.
double power(double base, double exponent) {
    const bool halves_exist = std::abs(base) > 1e-100 && std::abs(base) < 1e100;
    if (exponent == 2.0 && halves_exist) {
        const double square = base * base;
        if (rounds_clearly(square, square_error(base, square))) return square;
    } else if (exponent == 0.5 && base > 0.0 && halves_exist) {
        const double root = std::sqrt(base);
        const double square = root * root;
        const double rest = (base - square) - square_error(root, square);
        if (rounds_clearly(root, rest / (2.0 * root))) return root;
    }
    return library_power(base, exponent);
}

double factorial(double value) {
    // 0! is 0, and what is negative stays as it is.
    double product = value;
    for (double factor = value - 1.0; factor > 0.0 && !std::isinf(product); factor -= 1.0) {
        product *= factor;
    }
    return product;
}

double modulo(double value, double divisor) {
    constexpr double countable = 0x1p53;
    const double dividend = std::abs(value);
    const double step = std::abs(divisor);
    const double quotient = dividend / step;
    if (quotient <= countable) {
        // Rounded multiples do not fall, so only the counts next to the quotient can meet it.
        const double nearest = std::floor(quotient);
        for (double count = nearest - 2.0; count <= nearest + 2.0; count += 1.0) {
            if (count >= 1.0 && step * count == dividend) return 0.0;
        }
    }
    return std::fmod(value, divisor);
}

Error apply_function(char code, double& x) {
    const double radians = x * radians_per_degree;
    switch (code) {
        case '-':
            x = -x;
            break;
        case 's':
            x = platform::sine(radians);
            break;
        case 'c':
            x = platform::cosine(radians);
            break;
        case 't':
            if (std::abs(platform::cosine(radians)) < tangent_guard) return illegal_tangent;
            x = platform::tangent(radians);
            break;
        case 'e':
            if (std::abs(platform::sine(radians)) < tangent_guard) return illegal_cotangent;
            x = 1.0 / platform::tangent(radians);
            break;
        case 'q':
            if (x < 0.0) return negative_root;
            x = std::sqrt(x);
            break;
        case 'x':
        case 'y':
            if (x > 1.0 || x < -1.0) return arc_out_of_range;
            x = degrees(code == 'x' ? platform::arc_sine(x) : platform::arc_cosine(x));
            break;
        case 'z':
            x = degrees(platform::arc_tangent(x));
            break;
        case 'w':
            x = degrees(half_pi - platform::arc_tangent(x));
            break;
        case 'm':
        case 'n':
            if (x <= 0.0) return not_positive;
            x = code == 'm' ? platform::natural_logarithm(x) : platform::decimal_logarithm(x);
            break;
        case 'j':
            x = x == 0.0 ? 1.0 : 0.0;
            break;
        case 'o':
        case 'p':
            if (x > range_bound) return out_of_range;
            x = code == 'o' ? integer_part(x) : decimal_part(x);
            break;
        default:
            break;
    }
    return none;
}

// + - * / ^
Error combine(char code, double& left, double right) {
    switch (code) {
        case '+':
            left += right;
            break;
        case '-':
            left -= right;
            break;
        case '*':
            left *= right;
            break;
        case '/':
            if (right > -1e-14 && right < 1e-14) return division_by_zero;
            left /= right;
            if (left > range_bound) return out_of_range;
            break;
        default:
            left = right == 0.0 ? 1.0 : power(left, right);
            break;
    }
    return none;
}

bool holds(char code, double a, double b) {
    switch (code) {
        case code_and:
            return a != 0.0 && b != 0.0;
        case code_or:
            return a != 0.0 || b != 0.0;
        case code_ge:
            return !(a < b);
        case code_le:
            return !(b < a);
        case code_ne:
            return a != b;
        // By the difference, so two equal infinities are not "=".
        case '>':
            return a - b > 0.0;
        case '<':
            return a - b < 0.0;
        default:
            return a - b == 0.0;
    }
}

}  // namespace

Error apply_unary(char code, Value& value) {
    if (code == 'L') {
        value.number = static_cast<double>(value.text.size());
    } else if (code != '-') {
        const Function* row = function_of_code(code);
        if (row == nullptr || row->carrier != Carrier::numeric) return none;
    }
    value.type = code == 'o' ? type_integer : type_number;
    return apply_function(code, value.number);
}

Error apply_operator(char code, Value& left, double right) {
    // To the power of 0, the type of the left side stays, a text too.
    if (code != '^' || right != 0.0) left.type = type_number;
    if (code != '!') return combine(code, left.number, right);
    const double value = left.number;
    left.number = factorial(value);
    if (has_fraction(value)) return factorial_of_fraction;
    if (value < 0.0) return factorial_of_negative;
    return none;
}

void apply_relation(char code, Value& left, const Value& right) {
    bool result = false;
    if (code == code_like) {
        result = left.text.find(right.text) != std::string::npos;
    } else if (code == code_equal) {
        result = left.text == right.text;
    } else {
        result = holds(code, left.number, right.number);
    }
    left.number = result ? 1.0 : 0.0;
    left.type = type_number;
}

Error apply_modulo(Value& value, double divisor) {
    if (divisor == 0.0) return modulo_by_zero;
    value.number = modulo(value.number, divisor);
    value.type = type_number;
    return none;
}

void apply_case(Value& value, double mode) {
    for (char& c : value.text) c = mode == 0.0 ? to_lower(c) : to_upper(c);
    value.type = type_text;
}

}  // namespace model
