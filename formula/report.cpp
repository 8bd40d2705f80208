#include "formula/report.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <morandel/errors.h>

#include "formula/code_page.h"

namespace morandel::formula {
namespace {

struct Row {
    int reason;
    std::string_view message;
    std::string_view english;
};

constexpr Row reason_table[] = {
    {MORANDEL_REASON_NUMBERED, "未知错误", "unknown error"},
    {MORANDEL_REASON_TOO_LONG, "公式长度为 {} 字节, 超过 512 字节",
     "the formula has {} bytes of code page 936, more than 512"},
    {MORANDEL_REASON_OPEN_LITERAL, "字符串缺少右引号", "a text has no closing quote"},
    {MORANDEL_REASON_EMPTY, "公式为空", "the formula is empty"},
    {MORANDEL_REASON_NO_TOKEN, "公式不能以“{}”开头", "a formula cannot begin with '{}'"},
    {MORANDEL_REASON_NO_CHARACTER, "代码页 936 没有字符“{}”",
     "code page 936 has no character '{}'"},
    {MORANDEL_REASON_NOT_UTF8, "字节 {} 不是 UTF-8", "byte {} is not UTF-8"},
    {MORANDEL_REASON_HALF_CHARACTER, "字节 {} 不是代码页 936 的完整字符",
     "byte {} is no whole character of code page 936"},
    {MORANDEL_REASON_NO_CONVERTER, "系统不能转换代码页 936",
     "the system cannot convert code page 936"},
    {MORANDEL_REASON_TOO_MANY_NAMES, "有 {} 个名称, 超过 50 个",
     "there are {} names, more than 50"},
    {MORANDEL_REASON_FREE_NAME, "名称“{}”没有值", "the name '{}' has no value"},
    {MORANDEL_REASON_VALUE_COUNT, "值的个数应为 {}", "the count of values must be {}"},
    {MORANDEL_REASON_TEXT_RESULT, "结果是字符串, 不是数值", "the result is a text, not a number"},
    {MORANDEL_REASON_NUMBER_RESULT, "结果是数值, 不是字符串", "the result is a number, not a text"},
    {MORANDEL_REASON_NO_MEMORY, "内存不足", "out of memory"},
    {MORANDEL_REASON_MISUSE, "调用有误: {}", "wrong call: {}"},
    {MORANDEL_REASON_NOT_READ, "“{}”不能开始任何符号, 其后的内容不被读取",
     "'{}' starts nothing; the text from there on is not read"},
    {MORANDEL_REASON_NOT_COMPUTED, "计算在“{}”处结束, 其后的内容不参与计算",
     "the computation ends at '{}'; the text from there on does not count"},
    {MORANDEL_REASON_WRONG_KIND, "{}", "{}"},
    {MORANDEL_REASON_TOO_FEW, "{} 的参数太少", "{}: too few arguments"},
    {MORANDEL_REASON_TOO_MANY, "{} 的参数太多", "{}: too many arguments"},
    {MORANDEL_REASON_CANNOT_SUFFICE, "{} 的参数不可能足够", "{}: its arguments cannot suffice"},
};

std::string fill(std::string_view text, std::string_view about) {
    constexpr std::string_view gap = "{}";
    const std::size_t at = text.find(gap);
    std::string filled(text.substr(0, at));
    if (at == std::string_view::npos) return filled;
    return filled.append(about).append(text.substr(at + gap.size()));
}

}  // namespace

Report report_of_number(int number) {
    Report report;
    report.number = number;
    report.english = english_error_message(number).value();
    // Where the system cannot convert, rather English than a part.
    if (to_utf8(error_message(number).value(), report.message)) report.message = report.english;
    return report;
}

Report report_of_reason(int reason, std::string_view about) {
    const auto* row = std::ranges::find(reason_table, reason, &Row::reason);
    if (row == std::end(reason_table)) row = std::begin(reason_table);
    Report report;
    report.reason = reason;
    report.message = fill(row->message, about);
    report.english = fill(row->english, about);
    return report;
}

void refuse(int reason, std::string_view about) { throw Refused{report_of_reason(reason, about)}; }

void refuse_misuse(std::string_view what) { refuse(MORANDEL_REASON_MISUSE, what); }

std::string_view view(const char* text, std::size_t size) {
    if (size == 0) return {};
    if (text == nullptr) refuse_misuse("text == NULL");
    return size == MORANDEL_TERMINATED ? std::string_view(text) : std::string_view(text, size);
}

bool is_text_type(int type) {
    if (type < MORANDEL_INTEGER || type > MORANDEL_TEXT) refuse_misuse("type");
    return type == MORANDEL_TEXT;
}

}  // namespace morandel::formula
