// What a formula that is accepted does in silence: text that is not read, values of the wrong kind,
// calls that cannot succeed.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "cli/messages.h"
#include "cli/pending.h"

namespace morandel::cli {

enum class WarningKind { ignored_text, misread, wrong_kind, too_few, too_many, cannot_succeed };

struct Warning {
    std::size_t position = 0;  // bytes of code page 936
    std::size_t length = 0;
    WarningKind kind = WarningKind::ignored_text;
    Message message;
};

// In the order of their places. The formula is in code page 936; the kinds are those of the values
// that its names have.
std::vector<Warning> warnings_of(std::string_view formula, const KindOfName& kind_of_name);

// Of an operand or argument, counted from 1, of an operator or a function.
Message wrong_kind_message(std::string_view name, std::size_t operand, bool wants_text);

}  // namespace morandel::cli
