// The errors that formulas meet, and their messages.

#pragma once

#include <optional>
#include <string>

namespace model {

enum Error : int {
    none = -1,
    bad_expression = 0,
    unbalanced_parentheses = 1,
    no_expression = 2,
    division_by_zero = 3,
    illegal_tangent = 4,
    negative_root = 5,
    arc_out_of_range = 20,
    not_positive = 21,
    nothing_after_sum = 30,
    nothing_after_product = 31,
    nothing_after_power = 32,
    missing_close = 33,
    missing_operator = 34,
    missing_open = 35,
    illegal_symbol = 36,
    empty_expression = 37,
    name_too_long = 38,
    rounding_needs_floating = 39,
    factorial_of_fraction = 40,
    nothing_after_comma = 41,
    out_of_range = 42,
    decimals_not_natural = 43,
    text_too_long = 44,
    parenthesis_after_name = 45,
    parenthesis_after_constant = 46,
    no_such_number = 47,
    beyond_text = 48,
    number_not_positive = 49,
    decimals_beyond_number = 50,
    too_many_decimals = 51,
    too_few_texts = 52,
    number_not_as_defined = 53,
    too_many_digits = 54,
    longer_than_target = 55,
    text_expected = 56,
    integer_expected = 57,
    floating_expected = 58,
    value_missing = 59,
    value_incorrect = 60,
    illegal_cotangent = 61,
    bad_literal = 62,
    nothing_after_like = 63,
    nothing_after_equal_word = 64,
    nothing_after_and = 65,
    nothing_after_or = 66,
    nothing_after_not_less = 67,
    nothing_after_not_greater = 68,
    nothing_after_not_equal = 69,
    nothing_after_less = 70,
    nothing_after_greater = 71,
    nothing_after_equal = 72,
    decimals_out_of_bounds = 73,
    factorial_of_negative = 74,
    decimals_of_text = 75,
    modulo_by_zero = 76,
    empty_constant = 77,
    negative_length = 78,
    split_failed = 79,
};

// Bytes of code page 936; nothing for a number that has no message.
std::optional<std::string> message_of(int number);

// Those bytes for a text in UTF-8.
std::string gbk(const std::string& utf8);

}  // namespace model
