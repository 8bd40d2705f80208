#include "cli/table_reader.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "cli/encoding.h"
#include "cli/messages.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

constexpr std::size_t blocks = 4;
constexpr std::size_t block_size = std::size_t{64} * 1024;
constexpr std::size_t large_block = 16 * block_size;
constexpr std::chrono::milliseconds most_patience{200};

}  // namespace

struct TableReader::Shared {
    struct Filled {
        std::unique_ptr<TableBlock> block;
        ReadBlock read;  // the rest of it
    };

    Channel<bool> ended{1};  // closed when the thread is about to end
    Channel<std::unique_ptr<TableBlock>> spare{blocks};
    Channel<Filled> full{blocks};
    std::FILE* file;
    CsvParser parser;
    bool looks_for_mark;
    bool is_first = true;  // of the blocks
    std::string rest;      // of a row that is not whole yet
    std::uint64_t read_so_far = 0;

    Shared(std::FILE* input, char delimiter, std::uint64_t first_row, bool is_gbk)
        : file(input), parser(delimiter, first_row, is_gbk), looks_for_mark(!is_gbk) {}

    void run() {
        Filled end;
        try {
            while (read_block()) {
            }
        } catch (...) {
            end.read.problem = std::current_exception();
        }
        if (file != stdin) (void)std::fclose(file);
        full.push(std::move(end));
    }

    // A pipe gives what it has; a mark is looked for when its bytes are there.
    bool read_block() {
        auto spare_block = spare.pop();
        if (!spare_block) return false;
        Filled filled{std::move(*spare_block), {}};
        ReadBlock& read = filled.read;
        Block& block = filled.block->read;
        block.clear();
        block.bytes.swap(rest);
        bool is_last = false;
        do {
            is_last = !read_more(block.bytes);
        } while (!is_last && is_first && block.bytes.size() < byte_order_mark.size());
        if (is_first && begins_as_utf16(block.bytes)) {
            throw Problem(say("it is UTF-16; save it as UTF-8"));
        }
        is_first = false;
        if (looks_for_mark && block.bytes.starts_with(byte_order_mark)) {
            read.has_mark = true;
            block.bytes.erase(0, byte_order_mark.size());
        }
        looks_for_mark = false;
        std::exception_ptr problem;
        std::size_t whole = 0;
        try {
            whole = parser.parse(block, is_last);
            while (block.rows.empty() && whole == 0 && !is_last) {
                is_last = !read_on(block);
                whole = parser.parse(block, is_last);
            }
        } catch (...) {
            problem = std::current_exception();
        }
        rest.assign(block.bytes, whole);
        read.read_so_far = read_so_far;
        const bool is_large = block.bytes.size() > large_block;
        if (!full.push(std::move(filled))) return false;
        if (problem) std::rethrow_exception(problem);
        return !is_last && (!is_large || forget_blocks());
    }

    // Of a row that does not end yet, so much more that it is not parsed anew too often.
    bool read_on(Block& block) {
        block.fields.clear();
        block.unquoted.clear();
        const std::size_t size = block.bytes.size();
        const std::size_t wanted = std::min(size + size / 4, longest_row + 1);
        do {
            if (!read_more(block.bytes)) return false;
        } while (block.bytes.size() < wanted);
        return true;
    }

    // Waits until all blocks are done with and takes new ones, so that large rows do not add up.
    bool forget_blocks() {
        for (std::size_t i = 0; i < blocks; ++i) {
            if (!spare.pop()) return false;
        }
        for (std::size_t i = 0; i < blocks; ++i) spare.push(std::make_unique<TableBlock>());
        return true;
    }

    bool read_more(std::string& bytes) {
        const std::size_t before = bytes.size();
        bytes.resize(before + block_size);
        const auto size = read_some(file, bytes.data() + before, block_size);
        if (!size) throw Problem(say("the file cannot be read to its end"));
        bytes.resize(before + *size);
        read_so_far += *size;
        return *size > 0;
    }
};

TableReader::TableReader(std::FILE* file, char delimiter, std::uint64_t first_row, bool is_gbk)
    : m_shared(std::make_shared<Shared>(file, delimiter, first_row, is_gbk)) {
    for (std::size_t i = 0; i < blocks; ++i) m_shared->spare.push(std::make_unique<TableBlock>());
    m_thread = std::thread([shared = m_shared] {
        shared->run();
        shared->ended.close();
    });
}

TableReader::~TableReader() {
    m_shared->spare.close();
    m_shared->full.close();
    // A process must not end in the midst of the end of its threads.
    if (m_shared->ended.wait_closed(most_patience)) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

ReadBlock TableReader::next() {
    auto filled = m_shared->full.pop();
    if (!filled) return {};
    ReadBlock read = std::move(filled->read);
    if (read.problem) std::rethrow_exception(read.problem);
    if (filled->block == nullptr) return read;
    const auto give_back = [shared = m_shared](TableBlock* block) {
        shared->spare.push(std::unique_ptr<TableBlock>(block));
    };
    read.block = {filled->block.release(), give_back};
    return read;
}

}  // namespace morandel::cli
