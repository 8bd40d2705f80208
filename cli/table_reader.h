// Reads a table in a thread of its own, block by block.

#pragma once

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <thread>

#include "cli/channel.h"
#include "cli/table_block.h"

namespace morandel::cli {

struct ReadBlock {
    // Null at the end. Who lets go of it last lets it be filled again.
    std::shared_ptr<TableBlock> block;
    std::uint64_t read_so_far = 0;  // bytes
    bool has_mark = false;          // a byte order mark stood before it
    std::exception_ptr problem;     // why the end is not that of the file
};

class TableReader {
  public:
    // Rows are counted from first_row. The reader closes the file.
    TableReader(std::FILE* file, char delimiter, std::uint64_t first_row, bool is_gbk);
    ~TableReader();
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    // The next block with rows, or null at the end; throws what went wrong.
    ReadBlock next();

  private:
    struct Shared;
    // The thread has a share in it: a read that waits for a pipe cannot be called off.
    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};

}  // namespace morandel::cli
