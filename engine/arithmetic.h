// Calculation on values in hand: no tokens, no evaluator. Each routine says by its result which
// error it met; what it leaves in the value then is part of its meaning, since evaluation goes on.

#pragma once

#include <cmath>

#include "engine/errors.h"
#include "engine/functions.h"
#include "engine/text_arena.h"
#include "engine/value.h"

namespace morandel {

// A sign or a function of one argument, by its code character; other codes change nothing.
Error apply_unary(char code, Value& value);

// The same on a number alone.
Error apply_function(char code, double& x);

// + - * / ^ on numbers. The result replaces the left one.
inline Error combine(char code, double& left, double right);

// + - * / ^ and ! (which takes no right side). The result replaces the left number.
Error apply_operator(char code, Value& left, double right);

// "mod": fmod, but 0 where a whole multiple of the divisor, rounded, is the dividend.
Error apply_modulo(Value& value, double divisor);

// "preci": rounds half away from zero on the decimal text, whose runs of nines count as what
// they stand for, so 2.675 to two decimals is 2.68.
Error apply_rounding(Value& value, double decimals);

// "strcase": changes the ASCII letters byte by byte, in double-byte characters too; to lower case
// where mode is 0, else to upper case. The new text lies in the arena.
void apply_case(Value& value, double mode, TextArena& arena);

// Comparisons and logic on numbers, like and equal on texts; the result replaces the left number.
void apply_relation(char code, Value& left, const Value& right);

// Whether a relation holds between two numbers.
inline bool holds(char code, double a, double b);

double power(double base, double exponent);
double library_power(double base, double exponent);  // the same, and slower where that is quick

double factorial(double value);
double modulo(double value, double divisor);
double integer_part(double value);  // of the value rounded to six decimals
double decimal_part(double value);  // of the value rounded to fifteen decimals, without its sign

inline Error combine(char code, double& left, double right) {
    constexpr double division_guard = 1e-14;
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
            if (right > -division_guard && right < division_guard) return Error::division_by_zero;
            left /= right;
            if (left > range_bound) return Error::out_of_range;
            break;
        default:  // ^
            left = right == 0.0 ? 1.0 : power(left, right);
            break;
    }
    return Error::none;
}

inline bool holds(char code, double a, double b) {
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
        // Deliberate: by the difference, so two equal infinities are not "=".
        case '>':
            return a - b > 0.0;
        case '<':
            return a - b < 0.0;
        default:
            return a - b == 0.0;
    }
}

}  // namespace morandel
