// A progress bar on standard error, where that is a terminal.

#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "cli/messages.h"
#include "cli/system.h"

namespace morandel::cli {

class Progress {
  public:
    // A table on the same terminal shows by itself how far it is.
    explicit Progress(bool table_goes_to_file)
        : m_shown(is_error_terminal() && (table_goes_to_file || !is_output_terminal())) {}
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // The whole in bytes, 0 where it is not known.
    void begin(std::uint64_t whole) {
        m_whole = whole;
        m_last = std::chrono::steady_clock::now();
    }

    // Shows at most ten times a second how far it is.
    void update(std::uint64_t done, std::uint64_t rows) {
        if (!m_shown) return;
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < std::chrono::milliseconds(100)) return;
        m_last = now;
        m_visible = true;
        constexpr std::uint64_t width = 40;
        if (m_whole == 0) {
            std::fputs(('\r' + say("{0} rows", rows).shown()).c_str(), stderr);
            return;
        }
        const std::uint64_t part = done < m_whole ? done : m_whole;
        const auto filled = static_cast<std::size_t>(width * part / m_whole);
        const std::string bar = std::string(filled, '#') + std::string(width - filled, '.');
        std::fprintf(stderr, "\r[%s] %3llu%%", bar.c_str(),
                     static_cast<unsigned long long>(100 * part / m_whole));
    }

    // Makes room for a message.
    void clear() {
        if (m_visible) std::fputs("\r\x1b[K", stderr);
        m_visible = false;
    }

  private:
    std::uint64_t m_whole = 0;
    bool m_shown;
    bool m_visible = false;
    std::chrono::steady_clock::time_point m_last;
};

}  // namespace morandel::cli
