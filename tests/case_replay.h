// Plays case blocks on evaluators through the public calls.

#pragma once

#include <string>
#include <vector>

#include <morandel.h>
#include "tests/case_file.h"

namespace morandel::cases {

// What did not come out as expected, a text for each, with the line it stands on; empty when all
// is well.
std::vector<std::string> replay(const Block& block);

// Equal to the last bit, or both NaN; inexact ones may be four places apart.
bool same_number(double a, double b, bool inexact);

// What a check or a call on a list gives, in the words of the case files.
std::string check_outcome(CExpressionCheck& check, const std::string& formula);
std::string list_outcome(CVariableExpressList& list, const Line& line);

}  // namespace morandel::cases
