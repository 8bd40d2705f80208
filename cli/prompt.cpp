// morandel without arguments: the prompt on a terminal, else a formula a line.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "cli/color.h"
#include "cli/commands.h"
#include "cli/encoding.h"
#include "cli/line_reader.h"
#include "cli/lines.h"
#include "cli/session.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

// Where programs keep what they remember; empty where that cannot be made.
std::filesystem::path history_file() {
    if (const char* file = std::getenv("MORANDEL_HISTORY")) return to_path(file);
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path folder;
    if (state != nullptr && *state != '\0') {
        folder = to_path(state);
    } else if (home != nullptr && *home != '\0') {
        folder = to_path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "morandel";
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    return failure ? std::filesystem::path() : folder / "history";
}

int run_on_terminal(Session& session, bool quiet) {
    if (!quiet) {
        print_line(
            say("Morandel {0}: type a formula; :help helps, :quit ends", MORANDEL_VERSION).shown());
    }
    LineReader reader([&session](std::string_view before,
                                 std::string_view word) { return session.complete(before, word); },
                      history_file());
    std::string line;
    while (!session.ended() && reader.read(">", line)) {
        session.run(line);
        std::fflush(stdout);
    }
    return 0;
}

// Who types the lines, for output that goes elsewhere, sees each one's at once.
int run_on_lines(Session& session) {
    const bool is_typed = is_input_terminal();
    int status = 0;
    std::string line;
    for (bool is_first = true; !session.ended() && read_line(std::cin, line); is_first = false) {
        if (is_first && line.starts_with(byte_order_mark)) line.erase(0, byte_order_mark.size());
        if (!session.run(line)) status = 1;
        if (is_typed) std::fflush(stdout);
    }
    return status;
}

}  // namespace

int prompt_command(const Request& request) {
    Session session{Style(request)};
    const bool has_screen = is_input_terminal() && is_output_terminal();
    return has_screen ? run_on_terminal(session, request.quiet) : run_on_lines(session);
}

}  // namespace morandel::cli
