// morandel each FILE --add 'column = formula' ...: the table with computed columns, row by row.

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

#include "cli/commands.h"
#include "cli/file_problem.h"
#include "cli/input.h"
#include "cli/messages.h"
#include "cli/system.h"
#include "cli/table.h"

namespace morandel::cli {
namespace {

// One byte, or its name; a file's own name tells where nothing else does.
char delimiter_of(const std::string& asked, const std::string& file) {
    if (asked.empty()) {
        std::string ending = to_path(file).extension().string();
        std::ranges::transform(ending, ending.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        });
        return ending == ".tsv" || ending == ".tab" ? '\t' : ',';
    }
    if (asked == "tab" || asked == "\\t") return '\t';
    constexpr std::string_view impossible{"\"\r\n", 3};
    const bool is_possible = asked.size() == 1 && static_cast<unsigned char>(asked[0]) < 0x80 &&
                             impossible.find(asked) == std::string_view::npos;
    if (!is_possible) {
        throw UsageError(say("--delimiter takes one character or tab, not '{0}'", asked));
    }
    return asked.front();
}

}  // namespace

int each_command(const Request& request) {
    const auto [file, first_value] = input_of(request);
    const bool is_pipe = file == "-";
    const Message source = is_pipe ? say("standard input") : Message{file, file};
    const std::filesystem::path path = to_path(file);
    std::error_code unknown;
    std::FILE* in = stdin;
    std::uintmax_t size = 0;
    if (!is_pipe) {
        if (std::filesystem::is_directory(path, unknown)) throw Problem(cannot_read(file, EISDIR));
        in = open_file(path, "rb");
        if (in == nullptr) throw Problem(cannot_read(file));
        size = std::filesystem::file_size(path, unknown);
        if (unknown) size = 0;
    }
    Table table(request, source, first_value, delimiter_of(request.delimiter, file));
    return table.run(in, size);
}

}  // namespace morandel::cli
