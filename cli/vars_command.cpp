// morandel vars FORMULA

#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/evaluate.h"
#include "cli/output.h"

namespace morandel::cli {

int vars_command(const Request& request) {
    Evaluator evaluator;
    const Outcome outcome = evaluator.load(request.operands.front());
    if (!outcome.succeeded) return print_outcome(outcome, Style(request));
    for (const FreeVariable& variable : evaluator.free_variables()) {
        if (request.json) {
            print_line(nlohmann::json{{"name", variable.name}, {"type", type_name(variable.type)}});
        } else {
            print_line(variable.name + " " + type_name(variable.type));
        }
    }
    return 0;
}

}  // namespace morandel::cli
