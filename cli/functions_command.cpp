// morandel functions [NAME]: the library's own table.

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/encoding.h"
#include "cli/evaluate.h"
#include "cli/function_help.h"
#include "cli/functions.h"
#include "cli/help.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/picture.h"
#include "cli/syntax.h"

namespace morandel::cli {
namespace {

nlohmann::json function_json(const Function& function, const Outcome& example) {
    return {{"name", function.name},       {"arguments", function.arguments},
            {"summary", function.summary}, {"summary_zh", chinese_summary(function)},
            {"example", function.example}, {"result", outcome_json(example)}};
}

void list_functions(bool json) {
    std::size_t width = 0;
    for (const Function& function : functions()) {
        width = std::max(width, cells_of(call_text(function)));
    }
    for (const Function& function : functions()) {
        if (json) {
            print_line(function_json(function, Evaluator().evaluate(function.example)));
        } else {
            print_line(padded(call_text(function), width + 2) + summary_text(function));
        }
    }
}

}  // namespace

void print_function(const std::string& name, bool json) {
    const Function* function = find_function(name);
    if (trim(name).empty()) {
        throw UsageError(
            say("{0} needs {1}; see morandel help {0}", "functions", say("a function's name")));
    }
    if (function == nullptr) throw UsageError(no_such_function(to_gbk(name)));
    const Outcome example = Evaluator().evaluate(function->example);
    if (json) {
        print_line(function_json(*function, example));
    } else {
        print_line(call_text(*function));
        print_line("    " + summary_text(*function));
        print_line("    " + std::string(function->example) + " = " + value_text(example));
    }
}

int functions_command(const Request& request) {
    if (request.operands.empty()) {
        list_functions(request.json);
    } else {
        print_function(request.operands.front(), request.json);
    }
    return 0;
}

}  // namespace morandel::cli
