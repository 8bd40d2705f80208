// The file that a verb reads.

#pragma once

#include <cstddef>
#include <string>

#include "cli/commands.h"

namespace morandel::cli {

struct Input {
    std::string file;         // "-" for standard input
    std::size_t first_value;  // of the operands, the first name=value
};

// The first operand names the file, unless it is missing or a value: then a pipe is read.
// UsageError where there is neither a file nor a pipe.
Input input_of(const Request& request);

}  // namespace morandel::cli
