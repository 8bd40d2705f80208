// The verbs of the command. Each gives the exit status: 0, or 1 where a formula was refused or
// failed; wrong use throws UsageError.

#pragma once

#include <string>
#include <vector>

namespace morandel::cli {

struct Request {
    std::vector<std::string> operands;  // formula or file first, then name=value
    bool json = false;
    std::string get;                 // calc: the one name to print
    std::vector<std::string> add;    // each: "column = formula"
    std::string encoding = "utf-8";  // each: of the file, or "gbk"
    std::string on_error = "stop";   // each: or "skip", "empty"
};

int eval_command(const Request& request);
int vars_command(const Request& request);
int check_command(const Request& request);
int calc_command(const Request& request);
int each_command(const Request& request);
int functions_command(const Request& request);

// The prompt on a terminal; a formula a line from a pipe.
int prompt_command(const Request& request);

}  // namespace morandel::cli
