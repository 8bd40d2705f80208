// On Unix-like systems.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>

#include "cli/system.h"

namespace morandel::cli {
namespace {

// What the handler of signals reads: no more than functions that are safe in it.
std::array<char, 4096> unfinished;
std::atomic<bool> has_unfinished{false};
static_assert(std::atomic<bool>::is_always_lock_free);

// The signal's own action, which is restored, ends the process on return.
extern "C" void remove_unfinished(int signal) {
    if (has_unfinished) (void)unlink(unfinished.data());
    (void)raise(signal);
}

void handle_signals() {
    for (const int signal :
         {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ}) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
        action.sa_handler = remove_unfinished;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        (void)sigaction(signal, &action, nullptr);
    }
}

}  // namespace

// A stream that is closed would be the next file that is opened, and messages be written into that.
void prepare_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) != -1) continue;
        // Which cannot be read from, or written to, either.
        (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

std::vector<std::string> program_arguments(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

std::filesystem::path to_path(std::string_view name) { return name; }

std::FILE* open_file(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

std::optional<std::size_t> read_some(std::FILE* file, char* bytes, std::size_t size) {
    while (true) {
        const ssize_t read = ::read(fileno(file), bytes, size);
        if (read >= 0) return static_cast<std::size_t>(read);
        if (errno != EINTR) return std::nullopt;
    }
}

void remove_when_killed(const std::filesystem::path& path) {
    has_unfinished = false;
    const std::string& name = path.native();
    if (name.empty() || name.size() >= unfinished.size()) return;
    std::memcpy(unfinished.data(), name.c_str(), name.size() + 1);
    has_unfinished = true;
    handle_signals();
}

bool is_input_terminal() { return isatty(STDIN_FILENO) != 0; }

bool is_output_terminal() { return isatty(STDOUT_FILENO) != 0; }

bool is_error_terminal() { return isatty(STDERR_FILENO) != 0; }

bool is_system_chinese() { return false; }

}  // namespace morandel::cli
