// Tells the warnings of a formula.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/output.h"
#include "cli/warnings.h"

namespace morandel::cli {

// The kinds of values that are at hand.
KindOfName kinds_among(const std::vector<Variable>& variables);

// Prints the warnings of a formula (UTF-8) to standard error, unless they are to be silent; where
// is put before each, and may be empty. False where they are to be failures and there are some.
bool print_warnings(const std::string& formula, const KindOfName& kind_of_name, const Style& style,
                    const Message& where = {});

nlohmann::json warning_json(const Warning& warning, std::string_view gbk_formula);

}  // namespace morandel::cli
