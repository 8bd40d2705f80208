// Calculation on values in hand: no tokens, no evaluator. Each routine says by its result which
// error it met; what it leaves in the value then is part of its meaning, since evaluation goes on.

#pragma once

#include "engine/errors.h"
#include "engine/text_arena.h"
#include "engine/value.h"

namespace morandel {

// A sign or a function of one argument, by its code character; other codes change nothing.
Error apply_unary(char code, Value& value);

// Both numbers of an operation must lie in the range that the library computes in; a NaN does.
bool in_range(double number);

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

double factorial(double value);
double modulo(double value, double divisor);
double integer_part(double value);  // of the value rounded to six decimals
double decimal_part(double value);  // of the value rounded to fifteen decimals, without its sign

}  // namespace morandel
