#include "cli/encoding_name.h"

#include <string>
#include <utility>

namespace morandel::cli {
namespace {

constexpr std::pair<std::string_view, std::string_view> spellings[] = {
    {"utf8", "utf-8"},    {"utf8sig", "utf-8"},  {"utf8bom", "utf-8"}, {"65001", "utf-8"},
    {"cp65001", "utf-8"}, {"gbk", "gbk"},        {"gb2312", "gbk"},    {"euccn", "gbk"},
    {"cp936", "gbk"},     {"windows936", "gbk"}, {"936", "gbk"},       {"ms936", "gbk"},
    {"gb", "gbk"},        {"gb18030", "gbk"},
};

}  // namespace

std::optional<std::string_view> find_encoding(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c == '-' || c == '_' || c == ' ' || c == '.') continue;
        plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    for (const auto& [spelling, encoding] : spellings) {
        if (spelling == plain) return encoding;
    }
    return std::nullopt;
}

}  // namespace morandel::cli
