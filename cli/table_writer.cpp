#include "cli/table_writer.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <system_error>
#include <utility>

#include "cli/file_problem.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

constexpr int most_links = 40;              // from one to the next
constexpr std::size_t longest_begin = 200;  // of an unfinished file's name, which has room for more

}  // namespace

TableWriter::TableWriter(const std::string& file) : m_name(file) {
    if (!file.empty() && file != "-" && file != "/dev/stdout") {
        m_path = to_path(file);
        open();
        if (m_file == nullptr) throw problem(errno);
    }
    m_thread = std::thread([this] { run(); });
}

// The unfinished file stands beside the other, so that renaming it needs no copy. A link goes on
// leading to its file, which keeps its rights; a device or a pipe is written to as it is.
void TableWriter::open() {
    std::error_code failure;
    for (int links = 0; is_symlink(symlink_status(m_path, failure)); ++links) {
        if (links == most_links) throw problem(ELOOP);
        m_path = m_path.parent_path() / read_symlink(m_path);
    }
    const std::filesystem::file_status there = status(m_path, failure);
    if (is_directory(there)) throw problem(EISDIR);
    if (exists(there) && !is_regular_file(there)) {
        m_file = open_file(m_path, "wb");
        return;
    }
    auto name = m_path.filename().native();
    name.resize(std::min(name.size(), longest_begin));
    m_unfinished = m_path;
    m_unfinished.replace_filename(name);
    m_unfinished += ".part" + std::to_string(std::random_device()());
    remove_when_killed(m_unfinished);
    m_file = open_file(m_unfinished, "wbx");
    if (m_file == nullptr) remove_when_killed({});
    if (m_file != nullptr && is_regular_file(there)) {
        permissions(m_unfinished, there.permissions(), failure);
    }
}

TableWriter::~TableWriter() {
    stop();
    if (m_file != nullptr && m_file != stdout) (void)std::fclose(m_file);
    std::error_code ignored;
    if (m_unfinished.empty()) return;
    std::filesystem::remove(m_unfinished, ignored);
    remove_when_killed({});
}

Problem TableWriter::problem(int reason) const {
    return Problem(m_path.empty() ? cannot_write_output(reason) : cannot_write(m_name, reason));
}

void TableWriter::run() {
    std::string text;
    while (auto piece = m_pieces.pop()) {
        std::exception_ptr failure;
        try {
            // Behind what is missing nothing is written.
            if (!m_failure) write_piece(*piece, text);
        } catch (...) {
            failure = std::current_exception();
        }
        piece.reset();  // with what it holds
        const std::lock_guard lock(m_mutex);
        if (failure && !m_failure) m_failure = failure;
        --m_waiting;
        m_written.notify_all();
    }
}

// A piece that fails is written up to there.
void TableWriter::write_piece(const Piece& piece, std::string& text) {
    text.clear();
    std::exception_ptr failure;
    try {
        piece(text);
    } catch (...) {
        failure = std::current_exception();
    }
    const bool written =
        std::fwrite(text.data(), 1, text.size(), m_file) == text.size() && std::fflush(m_file) == 0;
    if (failure) std::rethrow_exception(failure);
    if (!written) throw problem(errno);
}

void TableWriter::stop() {
    m_pieces.close();
    if (m_thread.joinable()) m_thread.join();
}

void TableWriter::write(Piece piece) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_failure) std::rethrow_exception(m_failure);
        ++m_waiting;
    }
    m_pieces.push(std::move(piece));
}

void TableWriter::drain() {
    std::unique_lock lock(m_mutex);
    m_written.wait(lock, [this] { return m_waiting == 0; });
    if (m_failure) std::rethrow_exception(m_failure);
}

void TableWriter::finish() {
    drain();
    stop();
    if (m_path.empty()) return;
    if (std::fclose(std::exchange(m_file, nullptr)) != 0) throw problem(errno);
    if (m_unfinished.empty()) return;
    std::error_code failure;
    std::filesystem::rename(m_unfinished, m_path, failure);
    if (failure) throw problem(failure.default_error_condition().value());
    m_unfinished.clear();
    remove_when_killed({});
}

}  // namespace morandel::cli
