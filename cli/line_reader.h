// Lines typed at a terminal, with editing, history and completion as far as the system has them.

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// Whole words that the word before the cursor can become; before is the line in front of it.
using Completer =
    std::function<std::vector<std::string>(std::string_view before, std::string_view word)>;

class LineReader {
  public:
    // The history is read from the file and kept there; an empty path keeps none.
    LineReader(Completer completer, const std::filesystem::path& history_file);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    // Shows the prompt with a blank behind it and reads a line; false at the end of the input.
    // Ctrl-C gives up the line that is being typed, and begins another one.
    bool read(const std::string& prompt, std::string& line);

  private:
    struct Editor;
    std::unique_ptr<Editor> m_editor;
};

}  // namespace morandel::cli
