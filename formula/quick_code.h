// A program of numbers as a chain of small functions: each carries out a step or two and then calls
// the next one. It knows nothing of errors. Where one is met, or a number that is not ordinary, it
// gives up, and the program is to be run.

#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "base/floating_point.h"
#include "engine/blocks.h"
#include "engine/program.h"
#include "formula/quick_steps.h"

namespace morandel::formula {

class QuickCode {
  public:
    QuickCode() = default;
    // Of a numeric program with so many names; these are all its constants.
    QuickCode(const Program& program, std::span<const Blocks::Constant> constants,
              std::size_t names);

    // Values by place of their names. False where it gives up.
    [[nodiscard]] bool compute(std::span<const double> values, double& result) const {
        if (values.size() != m_names) return false;
        const double value = m_begin == nullptr ? m_constant : run(values.data());
        // Not compared as what it is: here the host may trap what is no number.
        if (is_set(beyond(value, range_bound))) return false;
        result = value;
        return true;
    }

    // How many numbers can be kept at a time.
    static constexpr std::size_t most_kept = 64;

  private:
    [[nodiscard]] double run(const double* values) const {
        const DefaultFloatingPoint environment;
        std::array<double, most_kept> kept;
        return m_begin(0.0, m_instructions.data(), values, kept.data());
    }

    std::size_t m_names = 0;
    Carry m_begin = nullptr;  // where there are instructions
    std::vector<Instruction> m_instructions;
    double m_constant = given_up;  // where that is all
};

}  // namespace morandel::formula
