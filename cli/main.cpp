// The morandel command: reads the arguments and hands them to a verb.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/color.h"
#include "cli/file_problem.h"
#include "cli/help.h"
#include "cli/language.h"
#include "cli/output.h"
#include "cli/system.h"

namespace {

using namespace morandel::cli;

constexpr int failure = 1;
constexpr int wrong_usage = 2;

// A wrong argument is told in the language that the arguments ask for, too.
void choose_language(const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        const bool is_last = i + 1 == arguments.size();
        const std::string& name = arguments[i];
        const auto chosen = name == "--lang" && !is_last  ? find_language(arguments[i + 1])
                            : name.starts_with("--lang=") ? find_language(name.substr(7))
                                                          : std::nullopt;
        if (chosen) speak(*chosen);
    }
}

int run(const std::vector<std::string>& arguments) {
    choose_language(arguments);
    const Arguments read = read_arguments(arguments);
    choose_colors(read.request.color);
    if (read.request.version) {
        print_line(std::string(MORANDEL_VERSION));
        return 0;
    }
    if (read.request.help) {
        print_text(read.verb == nullptr ? help_text() : help_text(*read.verb));
        return 0;
    }
    return read.verb == nullptr ? prompt_command(read.request) : read.verb->run(read.request);
}

}  // namespace

int main(int argc, char** argv) {
    int status = failure;
    try {
        prepare_streams();
        status = run(program_arguments(argc, argv));
        if (std::fflush(stdout) != 0) throw Problem(cannot_write_output());
    } catch (const UsageError& problem) {
        print_problem(problem.message());
        status = wrong_usage;
    } catch (const Problem& problem) {
        print_problem(problem.message(), problem.picture());
        status = failure;
    } catch (const std::exception& problem) {
        print_problem({problem.what(), problem.what()});
        status = failure;
    }
    return status;
}
