// The lines of the prompt: formulas, values for names, and commands that begin with a colon.

#pragma once

#include <string>
#include <string_view>

#include "cli/definitions.h"

namespace morandel::cli {

class Session {
  public:
    explicit Session(bool json) : m_json(json) {}

    // Carries out one line; false where it failed. Nothing that a line holds throws.
    bool run(std::string_view line);

    // Set by :quit.
    [[nodiscard]] bool ended() const { return m_ended; }

  private:
    bool run_line(std::string_view line);
    bool run_command(std::string_view command);
    bool assign(std::string_view name, std::string_view value);
    bool define(std::string_view name, std::string_view formula);
    bool check(std::string_view formula);
    bool list_variables();
    bool fail(const std::string& problem) const;

    Definitions m_definitions;
    bool m_json;
    bool m_ended = false;
};

}  // namespace morandel::cli
