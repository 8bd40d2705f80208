// What calls leave for the calls and evaluations after them.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "strfuncs/argument_stack.h"

namespace morandel {

// The numbers of further arguments. Deliberate: shared by all evaluators that compute on a thread,
// and emptied by the construction of any. Built with MORANDEL_PROCESS_WIDE_STATE, it is one for the
// process, and no two threads may compute at the same time.
ArgumentStack<double>& g_NumArray();

// What an evaluator has of its own, with the numbers that it computes with.
class Pending {
  public:
    // How much of what earlier formulas left behind an evaluation starts with.
    static constexpr std::size_t most = 65'536;
    static constexpr std::size_t most_bytes = std::size_t{64} << 20;

    void push(std::string_view text) {
        m_TempStr.push(text);
        ++m_unkept;
        m_pushed_bytes += text.size();
    }

    // Before an evaluation. Lets the oldest go of what is too much, and what an evaluation that ran
    // out of memory has left.
    void prepare(ArgumentStack<double>& numbers);
    // After it, as long as the texts that it pushed are where they were.
    void keep();
    void clear();

    ArgumentStack<PendingText> m_TempStr;  // texts of further arguments
    StringArgument first_argument;

  private:
    // Texts from here on.
    [[nodiscard]] std::size_t may_be_unkept() const {
        return m_TempStr.size() - std::min(m_unkept, m_TempStr.size());
    }

    std::size_t m_unkept = 0;        // texts that were pushed, some of which may be popped
    std::size_t m_pushed_bytes = 0;  // since those pending were counted last
};

}  // namespace morandel
