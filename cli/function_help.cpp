#include "cli/function_help.h"

#include <algorithm>
#include <string_view>

#include "cli/language.h"

namespace morandel::cli {
namespace {

struct ChineseHelp {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
};

constexpr ChineseHelp table[] = {
    {"sin", "角度", "角度的正弦"},
    {"cos", "角度", "角度的余弦"},
    {"tan", "角度", "角度的正切"},
    {"ctan", "角度", "角度的余切"},
    {"sqrt", "x", "平方根"},
    {"arcsin", "x", "正弦为 x 的角度"},
    {"arccos", "x", "余弦为 x 的角度"},
    {"arctan", "x", "正切为 x 的角度"},
    {"arcctan", "x", "余切为 x 的角度"},
    {"ln", "x", "自然对数"},
    {"log", "x", "以 10 为底的对数"},
    {"int", "x", "整数部分，x 先舍入到六位小数"},
    {"deci", "x", "小数部分，不带符号"},
    {"preci", "x, 小数位", "x 四舍五入到若干位小数（0 到 15）"},
    {"mod", "x, 除数", "余数，符号同 x"},
    {"strcase", "字符串[, 0]", "大写，带 0 时小写"},
    {"strlen", "字符串", "字节长度，一个汉字占两个字节"},
    {"strsub", "字符串, 起点, 长度[, 方向]", "取出一部分；长度 -1 表示取到末尾，方向 0 从右端数起"},
    {"strtrim", "部分, 字符串[, 边]", "去掉开头的这一部分，边为 0 时去掉末尾的"},
    {"strcat", "字符串, 字符串, ...", "全部连接起来"},
    {"strtrims", "字符串", "去掉两端的空白"},
    {"strmismatch", "字符串, 另一个[, 起点, 另一起点, 方式]", "相同开头的长度；方式 0 区分大小写"},
    {"strfind", "部分, 字符串[, 起点]", "部分在字符串中的位置，从 1 起，没有时为 -1"},
    {"strreplace", "新, 旧, 字符串[, 起点, 方式]", "把旧的换成新的；方式 0 只换第一处"},
    {"strdelete", "部分, 字符串", "去掉字符串中所有的这一部分"},
    {"strinsert", "字符串, 部分, 偏移", "在偏移处插入，偏移从 0 起"},
    {"r2s", "x[, 小数位]", "数值变成字符串，多余的小数直接截去"},
    {"s2r", "字符串", "字符串开头的数值"},
    {"strsubn", "字符串, 分隔符, n", "按分隔符分开后的第 n 段"},
    {"left", "字符串, n", "前 n 个字节；除 n 外还须有另一个待用的数值，否则失败"},
    {"right", "字符串, n", "后 n 个字节；除 n 外还须有另一个待用的数值，否则失败"},
    {"strfindn", "部分, 字符串", "部分在字符串中出现的次数"},
    {"not", "x", "x 为 0 时是 1，否则是 0"},
    {"if", "条件, 是, 否", "条件不为 0 时取第二个参数，否则取第三个"},
};

const ChineseHelp* chinese_help(const Function& function) {
    const auto* found = std::ranges::find(table, function.name, &ChineseHelp::name);
    return found == std::end(table) ? nullptr : found;
}

const ChineseHelp* shown_help(const Function& function) {
    return language() == Language::chinese ? chinese_help(function) : nullptr;
}

}  // namespace

std::string call_text(const Function& function) {
    const ChineseHelp* help = shown_help(function);
    const std::string_view arguments = help == nullptr ? function.arguments : help->arguments;
    return std::string(function.name) + "(" + std::string(arguments) + ")";
}

std::string summary_text(const Function& function) {
    const ChineseHelp* help = shown_help(function);
    return std::string(help == nullptr ? function.summary : help->summary);
}

std::string_view chinese_summary(const Function& function) {
    const ChineseHelp* help = chinese_help(function);
    return help == nullptr ? function.summary : help->summary;
}

}  // namespace morandel::cli
