// The table of errors: what is said of each, in Chinese and in English. The Chinese is readable
// here and code page 936 in the program.

#include <algorithm>
#include <functional>
#include <iterator>

#include "base/gbk.h"
#include "base/value.h"

namespace morandel {
namespace {

using enum ErrorNumber;

// clang-format off
constexpr ErrorText errors[] = {
    {bad_expression, gbk<U"表达式不对！">, "an operand is missing or has no value"},
    {unbalanced_parentheses, gbk<U"括号不匹配！">, "the parentheses do not match"},
    {no_expression, gbk<U"表达式不存在！">, "there is no formula to compute"},
    {division_by_zero, gbk<U"存在太小的分母(为零)！">, "division by zero, or by a number too close to it"},
    {illegal_tangent, gbk<U"正切的计算非法！">, "the tangent is not defined at this angle"},
    {negative_root, gbk<U"根号下为负！">, "the square root of a negative number"},
    {arc_out_of_range, gbk<U"反余弦或反正弦参数的绝对值大于1">, "arcsin and arccos take -1 to 1"},
    {not_positive, gbk<U"对数参数不应小于或等于0">, "the number must be above zero"},
    {nothing_after_sum, gbk<U"'+'或'-'后缺少表达式">, "an operand is missing after + or -"},
    {nothing_after_product, gbk<U"'*'或'/'后缺少表达式">, "an operand is missing after * or /"},
    {nothing_after_power, gbk<U"'^'后缺少表达式">, "an operand is missing after ^"},
    {missing_close, gbk<U"缺少')'">, "a ) is missing"},
    {missing_operator, gbk<U"缺少操作符">, "an operator is missing"},
    {missing_open, gbk<U"')'前缺少'('">, "a ) has no ("},
    {illegal_symbol, gbk<U"出现非法符号">, "an operand is missing, or a character is not part of the language"},
    {empty_expression, gbk<U"表达式为空">, "the formula is empty"},
    {name_too_long, gbk<U"变量名长度不能超过50">, "the name is too long"},
    {rounding_needs_floating, gbk<U"精度运算变量应该为浮点数">, "only a number with decimals can be rounded"},
    {factorial_of_fraction, gbk<U"阶乘运算数字应为整数">, "the factorial takes a whole number"},
    {nothing_after_comma, gbk<U"','后缺少表达式">, "an argument is missing after the comma"},
    {out_of_range, gbk<U"浮点运算值超越界限">, "a number is out of range"},
    {decimals_not_natural, gbk<U"精度运算第二个变量应该为自然数">,
     "the number of decimals must be a whole number, not below 0"},
    // The bound stands written out; the odd ending of the text is wanted.
    {text_too_long, gbk<U"字符串过长，应小于1000，或忘记在末尾的号">,
     "the text is too long, or its closing quote is missing"},
    {parenthesis_after_name, gbk<U"变量名后不能直接为(">, "a name cannot be followed by ("},
    {parenthesis_after_constant, gbk<U"常量后不能直接为(">, "a constant cannot be followed by ("},
    {no_such_number, gbk<U"不存在指定的数值">, "there is no such number"},
    {beyond_text, gbk<U"指定的数值超出字符串的长度">, "the position lies beyond the text"},
    {number_not_positive, gbk<U"指定的数值应该为正数">, "the number must not be negative"},
    {decimals_beyond_number, gbk<U"指定的数值超过精度运算小数位的最大长度">, "more decimals than the number has"},
    {too_many_decimals, gbk<U"数值超过精度运算小数位的最大长度(15位)">, "at most 15 decimals are possible"},
    {too_few_texts, gbk<U"字符串参数的个数少于函数定义所要求的个数">, "the function needs more texts"},
    {number_not_as_defined, gbk<U"指定的数值不符合函数定义中的要求">, "the number is not one that the function takes"},
    {too_many_digits, gbk<U"数值超过精度运算位的最大长度(15位)">, "at most 15 digits are possible"},
    {longer_than_target, gbk<U"数值超过目标字符长度">, "the text would become too long"},
    {text_expected, gbk<U"变量类型应该为字符类型 ,请核实">, "a text is expected"},
    {integer_expected, gbk<U"变量类型应该为整形类型,请核实">, "a whole number is expected"},
    {floating_expected, gbk<U"变量类型应该为浮点类型,请核实">, "a number is expected"},
    {value_missing, gbk<U"变量没赋予相应的数值或字符,请核实">, "the function needs more numbers or texts"},
    {value_incorrect, gbk<U"请核实变量赋予相应的数值或字符是否正确">,
     "a position or an argument is not one that the function takes"},
    {illegal_cotangent, gbk<U"余切的计算非法！">, "the cotangent is not defined at this angle"},
    {bad_literal, gbk<U"表达公式字符常量书写有误!">, "a text constant is written wrongly"},
    {nothing_after_like, gbk<U"'like'后缺少表达式">, "an operand is missing after like"},
    {nothing_after_equal_word, gbk<U"'equal'后缺少表达式">, "an operand is missing after equal"},
    {nothing_after_and, gbk<U"'and'后缺少表达式">, "an operand is missing after and"},
    {nothing_after_or, gbk<U"'or'后缺少表达式">, "an operand is missing after or"},
    {nothing_after_not_less, gbk<U"'>='后缺少表达式">, "an operand is missing after >="},
    {nothing_after_not_greater, gbk<U"'<='后缺少表达式">, "an operand is missing after <="},
    {nothing_after_not_equal, gbk<U"'<>'后缺少表达式">, "an operand is missing after <>"},
    {nothing_after_less, gbk<U"'<'后缺少表达式">, "an operand is missing after <"},
    {nothing_after_greater, gbk<U"'>'后缺少表达式">, "an operand is missing after >"},
    {nothing_after_equal, gbk<U"'='后缺少表达式">, "an operand is missing after ="},
    {decimals_out_of_bounds, gbk<U"精度取值超界">, "the number of decimals is out of bounds"},
    {factorial_of_negative, gbk<U"阶乘运算不能为负数">, "the factorial of a negative number"},
    {decimals_of_text, gbk<U"浮点到字符的转换函数,第二个参数类型应为正整数">,
     "the number of decimals must be a whole number above 0"},
    {modulo_by_zero, gbk<U"模运算,第二个参数类型不能为零">, "the divisor of mod is zero"},
    {empty_constant, gbk<U"常量为空">, "the constant is empty"},
    {negative_length, gbk<U"Strsub 函数，第二个参数数值不能够为不等于负一,而小于零的数值">,
     "the length of strsub must be -1 or not negative"},
    {split_failed, gbk<U"StrsubN 函数，分解原始字符串时发生错误。">, "strsubn could not split the text"},
};
// clang-format on

static_assert(std::ranges::is_sorted(errors, std::ranges::less_equal{}, &ErrorText::number),
              "ascending, and no number twice");

std::optional<std::string_view> find(int number, std::string_view ErrorText::*text) {
    const auto error = static_cast<Error>(number);
    const auto* row = std::ranges::lower_bound(errors, error, {}, &ErrorText::number);
    if (row == std::end(errors) || row->number != error) return std::nullopt;
    return row->*text;
}

}  // namespace

Table<ErrorText> error_table() { return {errors, std::size(errors)}; }

std::optional<std::string_view> error_message(int number) {
    return find(number, &ErrorText::message);
}

std::optional<std::string_view> english_error_message(int number) {
    return find(number, &ErrorText::english);
}

}  // namespace morandel
