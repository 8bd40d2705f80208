// Shows a function, for the verb and for the prompt.

#pragma once

#include <string>

namespace morandel::cli {

// UsageError where there is none of that name.
void print_function(const std::string& name, bool json);

}  // namespace morandel::cli
