// morandel without arguments: the prompt on a terminal, a formula a line from a pipe.

#include <cstdio>
#include <iostream>
#include <string>

#include "cli/commands.h"
#include "cli/lines.h"
#include "cli/session.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

int run_on_terminal(Session& session) {
    LineReader reader;
    std::string line;
    while (!session.ended() && reader.read(line)) {
        session.run(line);
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
    return is_input_terminal() ? run_on_terminal(session) : run_on_pipe(session);
}

}  // namespace morandel::cli
