#include "engine/pending.h"

#include <algorithm>
#include <utility>

namespace morandel {

ArgumentStack<double>& g_NumArray() {
#ifdef MORANDEL_PROCESS_WIDE_STATE
    static constinit ArgumentStack<double> numbers;
#else
    static constinit thread_local ArgumentStack<double> numbers;
#endif
    return numbers;
}

void Pending::prepare(ArgumentStack<double>& numbers) {
    m_TempStr.pop(std::exchange(m_unkept, 0));
    if (!first_argument.text.is_kept()) first_argument.text = std::string_view();
    numbers.drop_oldest(most);
    m_TempStr.drop_oldest(most);
    if (m_pushed_bytes <= most_bytes) return;
    m_pushed_bytes = 0;
    std::size_t kept = 0;
    for (std::size_t bytes = 0; kept < m_TempStr.size(); ++kept) {
        bytes += m_TempStr.from_top(kept).size();
        if (bytes > most_bytes) break;
    }
    m_TempStr.drop_oldest(kept);
    m_TempStr.each_spare([](PendingText& text) {
        constexpr std::size_t worth_keeping = 4096;
        if (text.room() > worth_keeping) text = PendingText();
    });
}

void Pending::keep() {
    first_argument.text.keep();
    const std::size_t size = m_TempStr.size();
    for (std::size_t i = size - std::min(m_unkept, size); i < size; ++i) m_TempStr[i].keep();
    m_unkept = 0;
}

void Pending::clear() {
    m_TempStr.clear();
    m_unkept = 0;
    first_argument.text = std::string_view();
    first_argument.index = 0;
}

}  // namespace morandel
