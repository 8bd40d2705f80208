// What can be asked of the command: its verbs and options, each a row of one table. The reading of
// arguments, the help, the manual page and the completion of shells all come from here.

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/commands.h"
#include "cli/language.h"

namespace morandel::cli {

struct Both {
    std::string_view english;
    std::string_view chinese;

    [[nodiscard]] std::string_view shown() const {
        return language() == Language::chinese ? chinese : english;
    }
};

struct Verb {
    std::string_view name;
    Both operands;  // as the usage shows them
    std::size_t fewest;
    std::size_t most;
    int (*run)(const Request&);
    Both summary;
    Both details;
    std::string_view example;  // a command line
};

// Where the value goes; a flag has none.
using Target =
    std::variant<bool Request::*, std::string Request::*, std::vector<std::string> Request::*>;

struct Option {
    std::string_view name;
    std::string_view short_name;
    Target target;
    std::string_view value;  // as the help shows it; "a|b" are the only ones allowed
    std::string_view verbs;  // that take it, with blanks between; empty for all
    Both help;

    [[nodiscard]] bool is_flag() const { return std::holds_alternative<bool Request::*>(target); }
    [[nodiscard]] Both shown_value() const;
    [[nodiscard]] bool is_for(std::string_view verb) const;
};

std::span<const Verb> verbs();
std::span<const Option> options();
const Verb* find_verb(std::string_view name);
const Option* find_option(std::string_view name);

// The words between the bars of "a|b"; none where there is no bar.
std::vector<std::string> choices_of(std::string_view value);

}  // namespace morandel::cli
