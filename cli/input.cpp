#include "cli/input.h"

#include <filesystem>

#include "cli/messages.h"
#include "cli/system.h"

namespace morandel::cli {

Input input_of(const Request& request) {
    const auto& operands = request.operands;
    std::error_code unknown;
    const bool has_file =
        !operands.empty() && (operands.front().find('=') == std::string::npos ||
                              std::filesystem::exists(to_path(operands.front()), unknown));
    if (has_file) return {operands.front(), 1};
    if (is_input_terminal()) throw UsageError(say("a file is needed, or input from a pipe"));
    return {"-", 0};
}

}  // namespace morandel::cli
