// What differs between the systems: the arguments, the streams, the terminal. Texts are UTF-8.

#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// Makes the standard streams carry the bytes that are written, and a console show them as UTF-8.
void prepare_streams();

// Of the program, without its name.
std::vector<std::string> program_arguments(int argc, char** argv);

std::filesystem::path to_path(std::string_view name);

// As std::fopen.
std::FILE* open_file(const std::filesystem::path& path, const char* mode);
// Reads what there is, at most so many bytes; 0 at the end, nothing where reading fails.
std::optional<std::size_t> read_some(std::FILE* file, char* bytes, std::size_t size);

// Takes this file away should a signal end the process; nothing more for an empty path. On Windows
// the file stays: it cannot be removed while it is open.
void remove_when_killed(const std::filesystem::path& path);

bool is_input_terminal();
bool is_output_terminal();
bool is_error_terminal();

// Whether the system itself is set to Chinese, where no setting says what it is.
bool is_system_chinese();

}  // namespace morandel::cli
