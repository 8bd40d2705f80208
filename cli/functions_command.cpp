// morandel functions [NAME]: the library's own table.

#include <algorithm>

#include "cli/commands.h"
#include "cli/output.h"

namespace morandel::cli {
namespace {

std::string call_text(const Function& function) {
    return std::string(function.name) + "(" + std::string(function.arguments) + ")";
}

nlohmann::json function_json(const Function& function, const Outcome& example) {
    return {{"name", function.name},
            {"arguments", function.arguments},
            {"summary", function.summary},
            {"example", function.example},
            {"result", outcome_json(example)}};
}

void list_functions(bool json) {
    std::size_t width = 0;
    for (const Function& function : functions()) {
        width = std::max(width, call_text(function).size());
    }
    for (const Function& function : functions()) {
        if (json) {
            print_line(function_json(function, Evaluator().evaluate(function.example)));
            continue;
        }
        std::string call = call_text(function);
        call.resize(width + 2, ' ');
        print_line(call + std::string(function.summary));
    }
}

}  // namespace

int functions_command(const Request& request) {
    if (request.operands.empty()) {
        list_functions(request.json);
        return 0;
    }
    const std::string& name = request.operands.front();
    const Function* function = find_function(name);
    if (function == nullptr) throw UsageError("there is no function '" + name + "'");
    const Outcome example = Evaluator().evaluate(function->example);
    if (request.json) {
        print_line(function_json(*function, example));
    } else {
        print_line(call_text(*function));
        print_line("    " + std::string(function->summary));
        print_line("    " + std::string(function->example) + " = " + value_text(example));
    }
    return example.succeeded ? 0 : 1;
}

}  // namespace morandel::cli
