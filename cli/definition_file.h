// Files of definitions, a line each: "name = value", "name := formula", # for comments.

#pragma once

#include <iosfwd>
#include <string>

#include "cli/definitions.h"
#include "cli/messages.h"

namespace morandel::cli {

// Where faults go: as text to standard error, as JSON to standard output.
class Faults {
  public:
    Faults(Message source, bool as_json) : m_source(std::move(source)), m_as_json(as_json) {}

    void report(const Outcome& outcome, int line, const std::string& name = {}) const;

  private:
    Message m_source;
    bool m_as_json;
};

enum class SameName { is_a_fault, replaces };

// False where a line is faulty; faulty lines are reported, up to a hundred. Throws Problem for
// input without an end.
bool read_definitions(std::istream& in, Definitions& definitions, const Faults& faults, bool is_gbk,
                      SameName same_name = SameName::is_a_fault);

// The line that reads back as this definition; empty for a text that has a quote or a line end,
// which no line can hold. UTF-8.
std::string definition_line(const Definition& definition);

}  // namespace morandel::cli
