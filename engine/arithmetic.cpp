#include "engine/arithmetic.h"

#include <algorithm>
#include <cmath>

#include "engine/characters.h"
#include "engine/functions.h"
#include "engine/search.h"

namespace morandel {
namespace {

constexpr double tangent_guard = 1e-05;
constexpr double radians_per_degree = 0.017453292519943295;
constexpr double pi = 3.141592653589793;
constexpr double half_pi = 1.5707963267948966;

double degrees(double radians) {
    return radians * 180.0 / pi;
}

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

}  // namespace

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

Error apply_function(char code, double& x) {
    const double radians = x * radians_per_degree;
    switch (code) {
        case '-':
            x = -x;
            break;
        case 's':
            x = std::sin(radians);
            break;
        case 'c':
            x = std::cos(radians);
            break;
        case 't':
            if (std::abs(std::cos(radians)) < tangent_guard) return Error::illegal_tangent;
            x = std::tan(radians);
            break;
        case 'e':
            if (std::abs(std::sin(radians)) < tangent_guard) return Error::illegal_cotangent;
            x = 1.0 / std::tan(radians);
            break;
        case 'q':
            if (x < 0.0) return Error::negative_root;
            x = std::sqrt(x);
            break;
        case 'x':
        case 'y':
            if (x > 1.0 || x < -1.0) return Error::arc_out_of_range;
            x = degrees(code == 'x' ? std::asin(x) : std::acos(x));
            break;
        case 'z':
            x = degrees(std::atan(x));
            break;
        case 'w':
            x = degrees(half_pi - std::atan(x));
            break;
        case 'm':
        case 'n':
            if (x <= 0.0) return Error::not_positive;
            x = code == 'm' ? std::log(x) : std::log10(x);
            break;
        case 'j':
            x = x == 0.0 ? 1.0 : 0.0;
            break;
        case 'o':
        case 'p':
            if (x > range_bound) return Error::out_of_range;
            x = code == 'o' ? integer_part(x) : decimal_part(x);
            break;
        default:
            break;
    }
    return Error::none;
}

Error apply_unary(char code, Value& value) {
    if (code == 'L') {
        value.number = static_cast<double>(value.text.size());
    } else if (code != '-') {
        const Function* row = function_of_code(code);
        if (row == nullptr || row->carrier != Carrier::numeric) return Error::none;
    }
    value.type = code == 'o' ? type_integer : type_number;
    return apply_function(code, value.number);
}

Error apply_operator(char code, Value& left, double right) {
    // Deliberate: to the power of 0, the type of the left side stays, a text too.
    if (code != '^' || right != 0.0) left.type = type_number;
    if (code != '!') return combine(code, left.number, right);
    const double value = left.number;
    left.number = factorial(value);
    if (has_fraction(value)) return Error::factorial_of_fraction;
    if (value < 0.0) return Error::factorial_of_negative;
    return Error::none;
}

double factorial(double value) {
    // Deliberate: 0! is 0, and what is negative stays as it is.
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

Error apply_modulo(Value& value, double divisor) {
    if (divisor == 0.0) return Error::modulo_by_zero;
    value.number = modulo(value.number, divisor);
    value.type = type_number;
    return Error::none;
}

void apply_case(Value& value, double mode, TextArena& arena) {
    char* changed = arena.allocate(value.text.size());
    std::ranges::transform(value.text, changed, mode == 0.0 ? to_lower : to_upper);
    value.text = {changed, value.text.size()};
    value.type = type_text;
}

void apply_relation(char code, Value& left, const Value& right) {
    bool result = false;
    if (code == code_like) {
        result = find_piece(left.text, right.text) != std::string_view::npos;
    } else if (code == code_equal) {
        result = left.text == right.text;
    } else {
        result = holds(code, left.number, right.number);
    }
    left.number = result ? 1.0 : 0.0;
    left.type = type_number;
}

}  // namespace morandel
