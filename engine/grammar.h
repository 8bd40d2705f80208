// The grammar check: whether a formula is accepted. Its grammar is not the evaluation's: looser
// here, stricter there.

#pragma once

#include "engine/faults.h"
#include "engine/token_reader.h"

namespace morandel {

// From the reading position on. The first rejection is recorded, and ends the check.
bool verify(TokenReader& tokens, Faults& faults, int& expression_status);

}  // namespace morandel
