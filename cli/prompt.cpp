// morandel without arguments: the prompt on a terminal, a formula a line from a pipe.

#include <editline/readline.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "cli/commands.h"
#include "cli/lines.h"
#include "cli/session.h"

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

int run_on_terminal(Session& session) {
    std::setlocale(LC_CTYPE, "");  // for the widths of what is typed
    static char name[] = "morandel";
    rl_readline_name = name;
    rl_completion_entry_function = complete_function;
    rl_initialize();
    while (!session.ended()) {
        const std::unique_ptr<char, Free> line(readline("> "));
        if (line == nullptr) {
            std::puts("");
            break;
        }
        if (*line != '\0') add_history(line.get());
        session.run(line.get());
        std::fflush(stdout);
    }
    return 0;
}

int run_on_pipe(Session& session) {
    int status = 0;
    std::string line;
    while (!session.ended() && read_line(std::cin, line)) {
        if (!session.run(line)) status = 1;
    }
    return status;
}

}  // namespace

int prompt_command(const Request& request) {
    Session session(request.json);
    return isatty(STDIN_FILENO) != 0 ? run_on_terminal(session) : run_on_pipe(session);
}

}  // namespace morandel::cli
