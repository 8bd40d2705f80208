// Every error number in words: what it means, a formula that has it, and the way out of it.

#pragma once

#include <span>
#include <string_view>

namespace morandel::cli {

struct ErrorHelp {
    int number;
    std::string_view english;  // the library has the Chinese text
    // Empty for those that no formula raises.
    std::string_view when_english;
    std::string_view when_chinese;
    std::string_view example;  // with this error
    std::string_view way_english;
    std::string_view way_chinese;
    std::string_view better;  // a formula that goes the way out; may be empty
};

std::span<const ErrorHelp> error_helps();
const ErrorHelp* find_error_help(int number);

}  // namespace morandel::cli
