// The verbs of the command. Each gives the exit status: 0, or 1 where a formula was refused or
// failed; wrong use throws UsageError.

#pragma once

#include <string>
#include <vector>

namespace morandel::cli {

struct Request {
    std::vector<std::string> operands;  // formula first, then name=value
    bool json = false;
};

int eval_command(const Request& request);
int vars_command(const Request& request);
int functions_command(const Request& request);

// The prompt on a terminal; a formula a line from a pipe.
int prompt_command(const Request& request);

}  // namespace morandel::cli
