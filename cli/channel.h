// Hands things from one thread to another, a few at a time.

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace morandel::cli {

template <class T>
class Channel {
  public:
    explicit Channel(std::size_t most) : m_most(most) {}

    // Waits for room; false where the channel is closed.
    bool push(T item) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_closed || m_items.size() < m_most; });
        if (m_closed) return false;
        m_items.push_back(std::move(item));
        m_changed.notify_all();
        return true;
    }

    // Waits for the next one; nothing where the channel is closed and empty.
    std::optional<T> pop() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_closed || !m_items.empty(); });
        if (m_items.empty()) return std::nullopt;
        std::optional<T> item(std::move(m_items.front()));
        m_items.pop_front();
        m_changed.notify_all();
        return item;
    }

    // False where it is not closed within that time.
    bool wait_closed(std::chrono::milliseconds patience) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, patience, [this] { return m_closed; });
    }

    // What is in the channel can still be taken out.
    void close() {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        m_changed.notify_all();
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<T> m_items;
    std::size_t m_most;
    bool m_closed = false;
};

}  // namespace morandel::cli
