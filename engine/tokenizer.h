// Cuts a formula into tokens.

#pragma once

#include <vector>

#include "engine/token.h"

namespace morandel {

// Replaces tokens by those of a formula of at most 512 bytes, the end token last; reading ends at
// the terminator or at a byte that starts no token. The tokens refer to the formula's bytes.
void tokenize(const char* formula, std::vector<Token>& tokens);

}  // namespace morandel
