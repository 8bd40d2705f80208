// The help of the command, from its table.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/verbs.h"

namespace morandel::cli {

std::string help_text();
std::string help_text(const Verb& verb);

// Two columns of a terminal, the right one wrapped.
using Rows = std::vector<std::pair<std::string, std::string>>;
std::string two_columns(const Rows& rows);

// Pads a text with blanks up to so many cells of a terminal.
std::string padded(std::string_view text, std::size_t cells);

}  // namespace morandel::cli
