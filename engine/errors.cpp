// The table of error messages, readable here and code page 936 in the program.

#include "engine/errors.h"

#include <algorithm>

#include "engine/gbk.h"

namespace morandel {
namespace {

constexpr ErrorText errors[] = {
    {0, gbk<"表达式不对！">},
    {1, gbk<"括号不匹配！">},
    {2, gbk<"表达式不存在！">},
    {3, gbk<"存在太小的分母(为零)！">},
    {4, gbk<"正切的计算非法！">},
    {5, gbk<"根号下为负！">},
    {20, gbk<"反余弦或反正弦参数的绝对值大于1">},
    {21, gbk<"对数参数不应小于或等于0">},
    {30, gbk<"'+'或'-'后缺少表达式">},
    {31, gbk<"'*'或'/'后缺少表达式">},
    {32, gbk<"'^'后缺少表达式">},
    {33, gbk<"缺少')'">},
    {34, gbk<"缺少操作符">},
    {35, gbk<"')'前缺少'('">},
    {36, gbk<"出现非法符号">},
    {37, gbk<"表达式为空">},
    {38, gbk<"变量名长度不能超过50">},
    {39, gbk<"精度运算变量应该为浮点数">},
    {40, gbk<"阶乘运算数字应为整数">},
    {41, gbk<"','后缺少表达式">},
    {42, gbk<"浮点运算值超越界限">},
    {43, gbk<"精度运算第二个变量应该为自然数">},
    // The bound stands written out; the odd ending of the text is wanted.
    {44, gbk<"字符串过长，应小于1000，或忘记在末尾的号">},
    {45, gbk<"变量名后不能直接为(">},
    {46, gbk<"常量后不能直接为(">},
    {47, gbk<"不存在指定的数值">},
    {48, gbk<"指定的数值超出字符串的长度">},
    {49, gbk<"指定的数值应该为正数">},
    {50, gbk<"指定的数值超过精度运算小数位的最大长度">},
    {51, gbk<"数值超过精度运算小数位的最大长度(15位)">},
    {52, gbk<"字符串参数的个数少于函数定义所要求的个数">},
    {53, gbk<"指定的数值不符合函数定义中的要求">},
    {54, gbk<"数值超过精度运算位的最大长度(15位)">},
    {55, gbk<"数值超过目标字符长度">},
    {56, gbk<"变量类型应该为字符类型 ,请核实">},
    {57, gbk<"变量类型应该为整形类型,请核实">},
    {58, gbk<"变量类型应该为浮点类型,请核实">},
    {59, gbk<"变量没赋予相应的数值或字符,请核实">},
    {60, gbk<"请核实变量赋予相应的数值或字符是否正确">},
    {61, gbk<"余切的计算非法！">},
    {62, gbk<"表达公式字符常量书写有误!">},
    {63, gbk<"'like'后缺少表达式">},
    {64, gbk<"'equal'后缺少表达式">},
    {65, gbk<"'and'后缺少表达式">},
    {66, gbk<"'or'后缺少表达式">},
    {67, gbk<"'>='后缺少表达式">},
    {68, gbk<"'<='后缺少表达式">},
    {69, gbk<"'<>'后缺少表达式">},
    {70, gbk<"'<'后缺少表达式">},
    {71, gbk<"'>'后缺少表达式">},
    {72, gbk<"'='后缺少表达式">},
    {73, gbk<"精度取值超界">},
    {74, gbk<"阶乘运算不能为负数">},
    {75, gbk<"浮点到字符的转换函数,第二个参数类型应为正整数">},
    {76, gbk<"模运算,第二个参数类型不能为零">},
    {77, gbk<"常量为空">},
    {78, gbk<"Strsub 函数，第二个参数数值不能够为不等于负一,而小于零的数值">},
    {79, gbk<"StrsubN 函数，分解原始字符串时发生错误。">},
};

static_assert(std::ranges::is_sorted(errors, std::ranges::less_equal{}, &ErrorText::number));

}  // namespace

constexpr std::string_view null_formula_message = gbk<"公式为空">;

std::span<const ErrorText> error_table() {
    return errors;
}

std::optional<std::string_view> error_message(int number) {
    const auto* row = std::ranges::lower_bound(errors, number, {}, &ErrorText::number);
    if (row == std::end(errors) || row->number != number) return std::nullopt;
    return row->message;
}

}  // namespace morandel
