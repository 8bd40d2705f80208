// The manual page, from the table of verbs and options.

#pragma once

#include <string>

namespace morandel::cli {

// In the language that the command speaks.
std::string manual_page();

}  // namespace morandel::cli
