// Where the grammar check refuses a formula, and why, in words.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "cli/messages.h"
#include "cli/tokens.h"

namespace morandel::cli {

// A place in a formula, in bytes of code page 936, and what is to be said of it.
struct Remark {
    std::size_t position = 0;
    std::size_t length = 0;
    Message message;
};

// The innermost fault of a formula that the library refuses; nothing where the same grammar accepts
// it.
std::optional<Remark> find_syntax_fault(std::string_view formula);

// What a message calls a character that cannot be shown; empty for others.
Message control_name(char character);

// The relation that a name holds, for want of blanks around it; else nothing.
std::string_view joined_relation(std::string_view name);

// Of a name that has no value, or that is no function; both offer what is spelled nearly so.
Message name_without_value(std::string_view name, std::span<const std::string> names);
Message no_such_function(std::string_view name);

}  // namespace morandel::cli
