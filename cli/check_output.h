// Shows what the checker finds.

#pragma once

#include <string>
#include <vector>

#include "cli/output.h"

namespace morandel::cli {

// Prints each fault with the formula and a caret under it, or as JSON the records as they are; 0
// for a formula without fault, else 1.
int print_check(const std::string& formula, const std::vector<Variable>& variables,
                const Style& style);

}  // namespace morandel::cli
