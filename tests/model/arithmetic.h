// Calculation on values. What an error leaves in the value is part of its meaning.

#pragma once

#include "tests/model/errors.h"
#include "tests/model/value.h"

namespace model {

// A sign or a function of one argument; other codes change nothing.
Error apply_unary(char code, Value& value);

// + - * / ^ and !
Error apply_operator(char code, Value& left, double right);

// Comparisons and logic on numbers, like and equal on texts.
void apply_relation(char code, Value& left, const Value& right);

Error apply_modulo(Value& value, double divisor);
Error apply_rounding(Value& value, double decimals);  // preci
void apply_case(Value& value, double mode);           // strcase

double integer_part(double value);
double decimal_part(double value);

}  // namespace model
