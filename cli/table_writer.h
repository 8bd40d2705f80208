// Makes the text of a table and writes it, in a thread of its own, to standard output or to a file
// that is whole or not there.

#pragma once

#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "cli/channel.h"
#include "cli/messages.h"

namespace morandel::cli {

class TableWriter {
  public:
    // To standard output where the name is empty, "-" or "/dev/stdout".
    explicit TableWriter(const std::string& file);
    // Takes a file away that was not finished.
    ~TableWriter();
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    // Puts a piece to the end of a text. It is called in the thread that writes.
    using Piece = std::function<void(std::string& text)>;

    // All of these throw Problem where something could not be written, or what a piece has thrown.
    void write(Piece piece);
    void drain();   // waits until all is written
    void finish();  // and gives the file its name

  private:
    void open();
    void run();
    void stop();
    void write_piece(const Piece& piece, std::string& text);
    [[nodiscard]] Problem problem(int reason) const;

    std::string m_name;
    std::filesystem::path m_path;
    std::filesystem::path m_unfinished;
    std::FILE* m_file = stdout;
    Channel<Piece> m_pieces{4};
    std::mutex m_mutex;
    std::condition_variable m_written;
    std::size_t m_waiting = 0;  // pieces that are not written yet
    std::exception_ptr m_failure;
    std::thread m_thread;
};

}  // namespace morandel::cli
