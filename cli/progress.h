// A progress bar on standard error, where that is a terminal.

#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "cli/system.h"

namespace morandel::cli {

class Progress {
  public:
    // The whole in bytes, 0 where it is not known.
    explicit Progress(std::uint64_t whole) : m_whole(whole), m_shown(is_error_terminal()) {}
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Shows at most ten times a second how far it is.
    void update(std::uint64_t done, std::uint64_t rows) {
        if (!m_shown || (rows & 0xFFU) != 0) return;
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < std::chrono::milliseconds(100)) return;
        m_last = now;
        m_visible = true;
        constexpr std::uint64_t width = 40;
        if (m_whole == 0) {
            std::fprintf(stderr, "\r%llu rows", static_cast<unsigned long long>(rows));
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
    std::uint64_t m_whole;
    bool m_shown;
    bool m_visible = false;
    std::chrono::steady_clock::time_point m_last;
};

}  // namespace morandel::cli
