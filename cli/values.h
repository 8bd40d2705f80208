// Values as people write them: on the command line, in files, at the prompt.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/outcome.h"

namespace morandel::cli {

// A name to be given a value, in code page 936. Throws EncodingError for one that formulas cannot
// have.
std::string read_name(std::string_view name);

// "name=value": a value that reads as a number is one, any other is a text, and "..." is a text
// without its quotes.
Variable read_variable(std::string_view definition);
Given read_value(std::string_view value);
std::string read_text(std::string_view value);
// All operands from the first on that holds one; UsageError where a name is given twice.
std::vector<Variable> read_variables(const std::vector<std::string>& operands,
                                     std::size_t first = 1);

// The same with all values as texts.
std::vector<Variable> read_texts(const std::vector<std::string>& operands, std::size_t first);

// Throws UsageError for a variable that is none of the names used; all are in code page 936.
void refuse_unused(const std::vector<Variable>& variables, const std::vector<std::string>& used);

// Whether a value in a file or at the prompt is one by itself: a number, or a text in quotes.
bool is_given_value(std::string_view value);

// The number that a whole text reads as: decimal, with a sign and an exponent at most.
bool read_number(std::string_view text, double& number);

}  // namespace morandel::cli
