// The verbs of the command. Each gives the exit status: 0, or 1 where a formula was refused or
// failed; wrong use throws UsageError.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

struct Request {
    std::vector<std::string> operands;  // formula or file first, then name=value
    bool json = false;
    bool help = false;
    bool version = false;
    bool quiet = false;
    bool strict = false;
    bool plain = false;
    bool no_header = false;
    bool man = false;
    std::string lang;
    std::string color = "auto";
    std::string decimals;
    std::string file;                 // eval: the formula's
    std::vector<std::string> get;     // calc: the names to print
    std::vector<std::string> add;     // each: "column = formula"
    std::vector<std::string> where;   // each: the rows to keep, for which all hold
    std::vector<std::string> select;  // each: the columns to write
    std::string output;               // each: the file to write
    std::string delimiter;            // each: between fields
    std::string encoding;             // of the file
    std::string on_error = "stop";
    std::string empty = "error";
    std::vector<std::string> text;    // each: columns that are texts
    std::vector<std::string> number;  // each: columns that are numbers
};

int eval_command(const Request& request);
int vars_command(const Request& request);
int check_command(const Request& request);
int calc_command(const Request& request);
int each_command(const Request& request);
int functions_command(const Request& request);
int errors_command(const Request& request);
// The same under the name that it has where it is asked for.
int show_errors(const Request& request, std::string_view name);
int help_command(const Request& request);
int completion_command(const Request& request);

// The prompt on a terminal; a formula a line from a pipe.
int prompt_command(const Request& request);

}  // namespace morandel::cli
