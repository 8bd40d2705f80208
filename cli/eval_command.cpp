// morandel eval FORMULA [name=value ...]

#include "cli/commands.h"
#include "cli/output.h"

namespace morandel::cli {

int eval_command(const Request& request) {
    std::vector<Variable> variables;
    for (std::size_t i = 1; i < request.operands.size(); ++i) {
        variables.push_back(read_variable(request.operands[i]));
    }
    Evaluator evaluator;
    evaluator.set_variables(variables);
    return print_outcome(evaluator.evaluate(request.operands.front()), request.json);
}

}  // namespace morandel::cli
