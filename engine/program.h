// A formula over numbers alone, made ready to be computed again and again: steps in a row, each of
// which leaves its result where later ones find it.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/value.h"

namespace morandel {

// What a step does with its operands. After its own operand comes the form for a left side, or an
// only one, that the step before has just computed and that need not be fetched.
enum class Operation : std::uint8_t {
    add,
    add_to_last,
    subtract,
    subtract_from_last,
    multiply,
    multiply_last,
    divide,
    divide_last,
    power,
    power_of_last,
    relation,  // by code, as are functions
    relation_of_last,
    function,
    function_of_last,
    // The product of both operands, to what the step before it has computed.
    add_product_to_last,
    subtract_product_from_last,
};

class Program {
  public:
    static constexpr std::size_t longest_formula = 512;  // no step or number without a byte

    void clear() { m_steps = m_numbers = 0; }

    // Keeps a number of the formula.
    const double* keep(double number) {
        m_number[m_numbers] = number;
        return &m_number[m_numbers++];
    }
    // Appends a step, by the form that fetches both sides; a function has no right one. Tells where
    // its result will be.
    const double* append(Operation operation, char code, const double* left, const double* right);
    // Ends the program with the operand that is its result.
    void finish(const double* operand, ResultType type) {
        m_answer = operand;
        m_type = type;
    }

    [[nodiscard]] ResultType type() const { return m_type; }

    // Computes, from operands that all are in range. False where a step meets an error or leaves
    // the range: the evaluation by levels tells what comes of it.
    bool run(double& result);

  private:
    struct Step {
        Operation operation;
        char code;
        const double* left;
        const double* right;
    };

    // The result of the step that many steps before the next one.
    [[nodiscard]] bool is_result(const double* operand, std::size_t back) const {
        return m_steps >= back && operand == &m_result[m_steps - back];
    }
    bool join_product(Operation operation, const double* left, const double* right);

    std::size_t m_steps = 0;
    std::size_t m_numbers = 0;
    const double* m_answer = nullptr;
    ResultType m_type = type_number;
    std::array<Step, longest_formula> m_step;
    std::array<double, longest_formula> m_result;
    std::array<double, longest_formula> m_number;
};

}  // namespace morandel
