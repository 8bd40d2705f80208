// The lines of the prompt: formulas, values for names, and commands that begin with a colon.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/definitions.h"
#include "cli/output.h"

namespace morandel::cli {

class Session {
  public:
    explicit Session(const Style& style) : m_style(style) {}

    // Carries out one line; false where it failed. Nothing that a line holds throws.
    bool run(std::string_view line);

    // Set by :quit.
    [[nodiscard]] bool ended() const { return m_ended; }

    // What the word can become; before is the line in front of it.
    [[nodiscard]] std::vector<std::string> complete(std::string_view before,
                                                    std::string_view word) const;

  private:
    struct Command;
    static std::vector<Command> commands();

    bool run_line(std::string_view line);
    bool run_command(std::string_view line);
    bool evaluate(std::string_view formula);
    bool assign(std::string_view name, std::string_view value);
    bool define(std::string_view name, std::string_view formula);
    bool warn(std::string_view formula);
    bool fail(const Message& problem) const;

    bool check(std::string_view formula);
    bool list_variables(std::string_view unused);
    bool show_functions(std::string_view name);
    bool show_error(std::string_view number);
    bool load(std::string_view file);
    bool save(std::string_view file);
    bool unset(std::string_view name);
    bool change_language(std::string_view name);
    bool show_help(std::string_view unused);
    bool quit(std::string_view unused);

    Definitions m_definitions;
    Style m_style;
    bool m_ended = false;
};

}  // namespace morandel::cli
