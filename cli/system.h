// What differs between the systems: the arguments, the streams, the terminal. Texts are UTF-8.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// Makes the standard streams carry the bytes that are written, and a console show them as UTF-8.
void prepare_streams();

// Of the program, without its name.
std::vector<std::string> program_arguments(int argc, char** argv);

std::filesystem::path to_path(std::string_view name);

bool is_input_terminal();
bool is_error_terminal();

// Lines typed at a terminal, with editing, history and completion as far as the system has them.
class LineReader {
  public:
    LineReader();
    // Shows the prompt and reads a line; false at the end of the input.
    bool read(std::string& line);
};

}  // namespace morandel::cli
