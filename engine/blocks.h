// A program of numbers, computed for many rows at once: each step for a block of rows that stays in
// the processor's nearest memory, before the next one. Rows that are anything but ordinary are told
// of, for the machine to compute: those that meet an error, leave the range, or have values that
// parameters do not keep as they are.

#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "engine/block_kernels.h"
#include "engine/program.h"
#include "engine/registers.h"

namespace morandel {

// Never changes once it is made, so any number of threads may compute with it.
class Blocks {
  public:
    struct Constant {
        Register place;
        double number;
    };
    struct Column {
        const double* values;
        // In numbers; 0 where one value, as parameters keep it, holds for all.
        std::ptrdiff_t stride;
    };

    // Of a numeric program; these are all its constants.
    Blocks(const Program& program, std::span<const Constant> constants,
           const BlockKernels& kernels = block_kernels());

    // Computes so many rows of columns by the place of their parameter. What is told of is no row's
    // result yet.
    void compute(std::span<const Column> columns, std::size_t rows, double* results,
                 const std::function<void(std::size_t row)>& tell) const;

  private:
    struct BlockStep {
        StepKind kind;
        char code;
        std::size_t left;  // operands and result as indices of buffers
        std::size_t right;
        std::size_t result;
    };
    struct Parameter {
        Register place;
        std::size_t buffer;
        // What reads it first: so many steps are before it, and it is that operand.
        std::size_t step;
        CheckedOperands operand;
    };
    class Room;
    enum class Values { plain, any };

    std::size_t take_buffer();
    void plan(const Program& program, std::vector<std::size_t>& buffer_of);
    [[nodiscard]] BlockKernel kernel(const BlockStep& step, unsigned checks) const {
        return m_kernels.by_code[checks][static_cast<unsigned char>(step.code)];
    }
    bool read(Room& room, const Parameter& parameter, std::size_t first, std::size_t count,
              Values values) const;
    bool run(Room& room, std::size_t first, std::size_t count, Values values) const;

    const BlockKernels& m_kernels;
    std::vector<BlockStep> m_steps;
    std::vector<Parameter> m_parameters;
    std::vector<std::pair<std::size_t, double>> m_constants;  // by buffer
    std::size_t m_buffers = 1;                                // the first one is the results'
    std::vector<std::size_t> m_free_buffers;
    std::size_t m_result = 0;
};

}  // namespace morandel
