// morandel eval FORMULA [name=value ...]

#include "cli/commands.h"
#include "cli/output.h"

namespace morandel::cli {

int eval_command(const Request& request) {
    Evaluator evaluator;
    evaluator.set_variables(read_variables(request.operands));
    return print_outcome(evaluator.evaluate(request.operands.front()), request.json);
}

}  // namespace morandel::cli
