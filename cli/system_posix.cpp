// On Unix-like systems, with libedit.

#include <editline/readline.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "cli/system.h"
#include "engine/functions.h"

namespace morandel::cli {
namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};

// Gives libedit the functions that begin with a text, one a call; it frees them.
char* complete_function(const char* beginning, int state) {
    static std::size_t next = 0;
    if (state == 0) next = 0;
    const std::string_view wanted(beginning);
    while (next < functions().size()) {
        const Function& function = functions()[next++];
        if (function.name.starts_with(wanted)) return strdup(std::string(function.name).c_str());
    }
    return nullptr;
}

}  // namespace

void prepare_streams() {}

std::vector<std::string> program_arguments(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

std::filesystem::path to_path(std::string_view name) {
    return name;
}

bool is_input_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

bool is_error_terminal() {
    return isatty(STDERR_FILENO) != 0;
}

LineReader::LineReader() {
    std::setlocale(LC_CTYPE, "");  // for the widths of what is typed
    static char name[] = "morandel";
    rl_readline_name = name;
    rl_completion_entry_function = complete_function;
    rl_initialize();
}

bool LineReader::read(std::string& line) {
    const std::unique_ptr<char, Free> typed(readline("> "));
    if (typed == nullptr) {
        std::puts("");
        return false;
    }
    if (*typed != '\0') add_history(typed.get());
    line = typed.get();
    return true;
}

}  // namespace morandel::cli
