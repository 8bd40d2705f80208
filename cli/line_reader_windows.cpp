// The console edits lines and keeps their history itself.

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdio>

#include "cli/color.h"
#include "cli/line_reader.h"
#include "cli/narrow_windows.h"

namespace morandel::cli {
namespace {

std::atomic<bool> is_reading = false;

// Ctrl-C ends the program unless a line is being typed.
BOOL WINAPI handle_key(DWORD event) { return event == CTRL_C_EVENT && is_reading ? TRUE : FALSE; }

enum class Read { line, end, given_up };

Read read_typed(std::wstring& typed) {
    std::array<wchar_t, 1024> room{};
    while (!typed.ends_with(L'\n')) {
        DWORD size = 0;
        SetLastError(0);
        const BOOL done = ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), room.data(),
                                       static_cast<DWORD>(room.size()), &size, nullptr);
        if (GetLastError() == ERROR_OPERATION_ABORTED) return Read::given_up;
        if (done == 0 || size == 0) return Read::end;
        typed.append(room.data(), size);
    }
    return Read::line;
}

}  // namespace

struct LineReader::Editor {};

LineReader::LineReader(Completer /*completer*/, const std::filesystem::path& /*history_file*/) {
    SetConsoleCtrlHandler(handle_key, TRUE);
}

LineReader::~LineReader() { SetConsoleCtrlHandler(handle_key, FALSE); }

bool LineReader::read(const std::string& prompt, std::string& line) {
    while (true) {
        std::fputs((painted(Paint::prompt, prompt, stdout) + ' ').c_str(), stdout);
        std::fflush(stdout);
        std::wstring typed;
        is_reading = true;
        const Read result = read_typed(typed);
        is_reading = false;
        if (result == Read::given_up) {
            std::puts("");
            continue;
        }
        constexpr wchar_t end_of_input = 26;  // Ctrl-Z
        if (result == Read::end || typed.front() == end_of_input) return false;
        typed.erase(typed.find_last_not_of(L"\r\n") + 1);
        line = narrow(typed);
        return true;
    }
}

}  // namespace morandel::cli
