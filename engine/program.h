// A formula over numbers alone, made ready to be computed again and again: steps on a stack of
// numbers, whose top is at hand.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/value.h"

namespace morandel {

enum class Operation : std::uint8_t {
    end,
    load,   // the operand becomes the top
    unary,  // of the top, by code
    // The top by the operand, or the number below the top by the top.
    add,
    subtract,
    multiply,
    divide,
    power,
    relation,  // by code
    add_below,
    subtract_below,
    multiply_below,
    divide_below,
    power_below,
    relation_below,
};

class Program {
  public:
    void clear() { m_steps = m_numbers = 0; }

    void append(Operation operation, char code, const double* operand) {
        m_step[m_steps++] = {operation, code, operand};
    }
    // Keeps a number of the formula.
    const double* keep(double number) {
        m_number[m_numbers] = number;
        return &m_number[m_numbers++];
    }
    void set_type(ResultType type) { m_type = type; }

    [[nodiscard]] ResultType type() const { return m_type; }
    // False where a step meets an error: the evaluation by levels tells which.
    bool run(double& result) const;

  private:
    static constexpr std::size_t longest_formula = 512;  // no step without a byte of its own

    struct Step {
        Operation operation;
        char code;
        const double* operand;
    };

    std::size_t m_steps = 0;
    std::size_t m_numbers = 0;
    ResultType m_type = type_number;
    std::array<Step, longest_formula + 1> m_step;
    std::array<double, longest_formula / 2 + 1> m_number;
};

}  // namespace morandel
