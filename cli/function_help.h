// The functions in Chinese; the library's table has them in English.

#pragma once

#include <morandel.h>

#include <string>
#include <string_view>

namespace morandel::cli {

// "strsub(text, start, length[, direction])", in the language that the command speaks.
std::string call_text(const Function& function);
std::string summary_text(const Function& function);
std::string_view chinese_summary(const Function& function);

}  // namespace morandel::cli
