// What kinds of results there are.

#pragma once

#include <cstdint>

namespace morandel {

// As GetResultType reports them, and as variables are expected to be.
enum ResultType : std::uint8_t { type_integer = 0, type_number = 1, type_text = 2 };

}  // namespace morandel
