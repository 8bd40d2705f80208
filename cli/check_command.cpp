// morandel check FORMULA [name=value ...]

#include "cli/check_output.h"
#include "cli/commands.h"
#include "cli/values.h"

namespace morandel::cli {

int check_command(const Request& request) {
    return print_check(request.operands.front(), read_variables(request.operands), Style(request));
}

}  // namespace morandel::cli
