// Plays case blocks on evaluators through the public calls.

#pragma once

#include <string>
#include <vector>

#include "tests/case_file.h"

namespace morandel::cases {

// What did not come out as expected, a text for each, with the line it stands on; empty when all
// is well.
std::vector<std::string> replay(const Block& block);

}  // namespace morandel::cases
