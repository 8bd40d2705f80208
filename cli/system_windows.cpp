// On Windows, whose console edits lines and keeps their history itself.

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <memory>

#include "cli/system.h"

namespace morandel::cli {
namespace {

std::string narrow(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int room =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), room, nullptr, nullptr);
    return bytes;
}

bool is_console(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};

}  // namespace

void prepare_streams() {
    for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    // The progress bar and its removal need the terminal's escape sequences.
    DWORD mode = 0;
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    constexpr DWORD escape_sequences = 0x0004;
    if (GetConsoleMode(error, &mode) != 0) SetConsoleMode(error, mode | escape_sequences);
}

std::vector<std::string> program_arguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const std::unique_ptr<LPWSTR, FreeLocal> given(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; given != nullptr && i < count; ++i) {
        arguments.push_back(narrow(given.get()[i]));
    }
    return arguments;
}

std::filesystem::path to_path(std::string_view name) {
    return std::u8string(name.begin(), name.end());
}

bool is_input_terminal() {
    return is_console(STD_INPUT_HANDLE);
}

bool is_error_terminal() {
    return is_console(STD_ERROR_HANDLE);
}

LineReader::LineReader() = default;

bool LineReader::read(std::string& line) {
    std::fputs("> ", stdout);
    std::fflush(stdout);
    std::wstring typed;
    std::array<wchar_t, 1024> room{};
    while (!typed.ends_with(L'\n')) {
        DWORD size = 0;
        if (ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), room.data(),
                         static_cast<DWORD>(room.size()), &size, nullptr) == 0 ||
            size == 0) {
            return false;
        }
        typed.append(room.data(), size);
    }
    constexpr wchar_t end_of_input = 26;  // Ctrl-Z
    if (typed.front() == end_of_input) return false;
    typed.erase(typed.find_last_not_of(L"\r\n") + 1);
    line = narrow(typed);
    return true;
}

}  // namespace morandel::cli
