// On Windows.

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "cli/narrow_windows.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

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

std::FILE* open_file(const std::filesystem::path& path, const char* mode) {
    const std::string_view narrow_mode(mode);
    return _wfopen(path.c_str(), std::wstring(narrow_mode.begin(), narrow_mode.end()).c_str());
}

std::optional<std::size_t> read_some(std::FILE* file, char* bytes, std::size_t size) {
    const int read = _read(_fileno(file), bytes, static_cast<unsigned>(size));
    if (read < 0) return std::nullopt;
    return static_cast<std::size_t>(read);
}

void remove_when_killed(const std::filesystem::path& /*path*/) {}

bool is_input_terminal() { return is_console(STD_INPUT_HANDLE); }

bool is_output_terminal() { return is_console(STD_OUTPUT_HANDLE); }

bool is_error_terminal() { return is_console(STD_ERROR_HANDLE); }

bool is_system_chinese() { return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_CHINESE; }

}  // namespace morandel::cli
