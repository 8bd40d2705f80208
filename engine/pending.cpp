#include "engine/pending.h"

#ifdef MORANDEL_PROCESS_WIDE_STATE
#include <mutex>
#endif

#include "base/everlasting.h"
#include "engine/turn.h"

namespace morandel {

#ifdef MORANDEL_PROCESS_WIDE_STATE
namespace {
std::mutex turns;
}
#endif

ArgumentStack<double>& g_NumArray() {
#ifdef MORANDEL_PROCESS_WIDE_STATE
    static constinit Everlasting<ArgumentStack<double>> numbers;
#else
    static constinit thread_local Everlasting<ArgumentStack<double>> numbers;
    // Static objects go after what is the thread's.
    struct Release {
        ~Release() { numbers.value = {}; }
    };
    static thread_local const Release release;
#endif
    return numbers.value;
}

void begin_turn() {
#ifdef MORANDEL_PROCESS_WIDE_STATE
    turns.lock();
#endif
}

void end_turn() {
#ifdef MORANDEL_PROCESS_WIDE_STATE
    turns.unlock();
#endif
}

void Pending::prepare(ArgumentStack<double>& numbers) {
    // All that come after the first one that is not kept were pushed by the same evaluation.
    std::size_t kept = may_be_unkept();
    while (kept < m_TempStr.size() && m_TempStr[kept].is_kept()) ++kept;
    m_TempStr.pop(m_TempStr.size() - kept);
    m_unkept = 0;
    if (!first_argument.text.is_kept()) first_argument = {};
    numbers.drop_oldest(most);
    m_TempStr.drop_oldest(most);
    if (m_pushed_bytes <= most_bytes) return;
    m_pushed_bytes = 0;
    std::size_t newest = 0;
    for (std::size_t bytes = 0; newest < m_TempStr.size(); ++newest) {
        bytes += m_TempStr.from_top(newest).size();
        if (bytes > most_bytes) break;
    }
    m_TempStr.drop_oldest(newest);
    m_TempStr.each_spare([](PendingText& text) {
        constexpr std::size_t worth_keeping = 4096;
        if (text.room() > worth_keeping) text = PendingText();
    });
}

void Pending::keep() {
    first_argument.text.keep();
    for (std::size_t i = may_be_unkept(); i < m_TempStr.size(); ++i) m_TempStr[i].keep();
    m_unkept = 0;
}

void Pending::clear() {
    m_TempStr.clear();
    m_unkept = 0;
    first_argument = {};
}

}  // namespace morandel
