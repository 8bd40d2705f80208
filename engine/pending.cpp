#include "engine/pending.h"

namespace morandel {

#ifdef MORANDEL_PROCESS_WIDE_STATE
constinit ArgumentStack<double> g_NumArray;
#else
constinit thread_local ArgumentStack<double> g_NumArray;
#endif

void Pending::drop_excess(ArgumentStack<double>& numbers) {
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
    m_TempStr.each_spare([](std::string& text) {
        constexpr std::size_t worth_keeping = 4096;
        if (text.capacity() > worth_keeping) text = std::string();
    });
}

}  // namespace morandel
