#include "cli/color.h"

#include <cstdlib>

#include "cli/system.h"

namespace morandel::cli {
namespace {

std::string& choice() {
    static std::string chosen = "auto";
    return chosen;
}

bool is_set(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

std::string_view code_of(Paint paint) {
    switch (paint) {
        case Paint::problem:
            return "\x1b[1;31m";
        case Paint::warning:
            return "\x1b[1;33m";
        case Paint::mark:
            return "\x1b[1;32m";
        case Paint::prompt:
            break;
    }
    return "\x1b[1;36m";
}

}  // namespace

void choose_colors(std::string_view chosen) { choice() = chosen; }

bool has_colors(std::FILE* stream) {
    if (choice() != "auto") return choice() == "always";
    const char* terminal = std::getenv("TERM");
    if (is_set("NO_COLOR") || (terminal != nullptr && std::string_view(terminal) == "dumb")) {
        return false;
    }
    return stream == stderr ? is_error_terminal() : is_output_terminal();
}

std::string painted(Paint paint, std::string_view text, std::FILE* stream) {
    if (text.empty() || !has_colors(stream)) return std::string(text);
    constexpr std::string_view plain = "\x1b[0m";
    return std::string(code_of(paint)).append(text).append(plain);
}

}  // namespace morandel::cli
