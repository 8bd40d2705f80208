#include "engine/blocks.h"

#include <algorithm>
#include <memory>

#include "base/value.h"
#include "language/characters.h"
#include "language/functions.h"
#include "language/operators.h"

namespace morandel {
namespace {

constexpr std::size_t rows_of_block = 512;
// A block with a row that is not ordinary is computed again in pieces, to find it.
constexpr std::size_t rows_of_piece = 16;

// What has no kernel.
bool compute_rows(StepKind kind, char code, const double* left, const double* right, double* result,
                  std::size_t count) {
    const NumberFunction function =
        kind == StepKind::unary ? function_of_code(code)->body.number : nullptr;
    const NumberOperator of_two = function == nullptr ? operator_of_code(code)->number : nullptr;
    bool ordinary = true;
    for (std::size_t i = 0; i < count; ++i) {
        double value = left[i];
        const Error error = function != nullptr ? function(value) : of_two(value, right[i]);
        ordinary = ordinary && error == Error::none && is_ordinary(value);
        result[i] = value;
    }
    return ordinary;
}

}  // namespace

Blocks::Blocks(const Program& program, std::span<const Constant> constants,
               const BlockKernels& kernels)
    : m_kernels(kernels) {
    constexpr std::size_t none = 0;
    std::vector<std::size_t> buffer_of(Registers::first_free + longest_formula + 1, none);
    for (const Constant& constant : constants) {
        buffer_of[constant.place] = take_buffer();
        m_constants.emplace_back(buffer_of[constant.place], constant.number);
    }
    std::size_t steps = 0;
    const auto read = [&](Register place, CheckedOperands operand) {
        if (place >= Registers::parameters || buffer_of[place] != none) return;
        buffer_of[place] = take_buffer();
        m_parameters.push_back({place, buffer_of[place], steps, operand});
    };
    for (const Step& step : program.steps) {
        read(step.left, check_left);
        if (step.kind != StepKind::unary) read(step.right, check_right);
        ++steps;
    }
    read(program.result, check_none);
    plan(program, buffer_of);
    m_result = program.steps.empty() ? buffer_of[program.result] : none;
}

// A result takes a buffer that no later step reads, and the last one the results' own. One step
// reads it, as an operand of a formula stands in one place.
void Blocks::plan(const Program& program, std::vector<std::size_t>& buffer_of) {
    std::vector<bool> is_result(buffer_of.size(), false);
    for (const Step& step : program.steps) {
        const bool is_unary = step.kind == StepKind::unary;
        const std::size_t left = buffer_of[step.left];
        const std::size_t right = is_unary ? left : buffer_of[step.right];
        const bool is_last = &step == &program.steps.back();
        const std::size_t result = is_last ? 0 : take_buffer();
        buffer_of[step.result] = result;
        m_steps.push_back({step.kind, step.code, left, right, result});
        is_result[step.result] = true;
        if (is_result[step.left]) m_free_buffers.push_back(left);
        if (!is_unary && is_result[step.right]) m_free_buffers.push_back(right);
    }
}

std::size_t Blocks::take_buffer() {
    if (m_free_buffers.empty()) return m_buffers++;
    const std::size_t buffer = m_free_buffers.back();
    m_free_buffers.pop_back();
    return buffer;
}

// Where a computation has its buffers.
class Blocks::Room {
  public:
    Room(const Blocks& blocks, std::span<const Column> given, double* to)
        : columns(given),
          results(to),
          buffers(blocks.m_buffers),
          checks(blocks.m_steps.size(), check_none),
          m_memory(std::make_unique_for_overwrite<double[]>(blocks.m_buffers * rows_of_block)) {
        for (std::size_t i = 0; i < buffers.size(); ++i) buffers[i] = memory(i);
        for (const auto& [buffer, number] : blocks.m_constants) fill(buffer, number);
        for (const Parameter& parameter : blocks.m_parameters) {
            const Column& column = columns[parameter.place];
            if (column.stride == 0) {
                fill(parameter.buffer, *column.values);
            } else if (parameter.operand != check_none) {
                const unsigned all = checks[parameter.step] | parameter.operand;
                if (blocks.kernel(blocks.m_steps[parameter.step], all) != nullptr) {
                    checks[parameter.step] = all;
                }
            }
        }
    }

    double* memory(std::size_t buffer) { return m_memory.get() + buffer * rows_of_block; }

    std::span<const Column> columns;
    double* results;
    std::vector<const double*> buffers;  // what steps read
    std::vector<unsigned> checks;        // of each step, where values are to be plain

  private:
    void fill(std::size_t buffer, double number) {
        std::fill_n(memory(buffer), rows_of_block, number);
    }

    std::unique_ptr<double[]> m_memory;
};

// False where a value is beyond the range or, unless a step looks, not plain where it is to be.
bool Blocks::read(Room& room, const Parameter& parameter, std::size_t first, std::size_t count,
                  Values values) const {
    const Column& column = room.columns[parameter.place];
    // One value for all rows comes as parameters keep it.
    if (column.stride == 0) return is_ordinary(*column.values);
    const double*& buffer = room.buffers[parameter.buffer];
    double* const copy = room.memory(parameter.buffer);
    const double* next = column.values + static_cast<std::ptrdiff_t>(first) * column.stride;
    buffer = next;
    if (column.stride != 1) {
        for (std::size_t i = 0; i < count; ++i) {
            copy[i] = next[static_cast<std::ptrdiff_t>(i) * column.stride];
        }
        buffer = copy;
    }
    if (values == Values::any) {
        const bool in_range = m_kernels.keep(buffer, copy, count);
        buffer = copy;
        return in_range;
    }
    const bool is_checked_by_step =
        parameter.operand != check_none && (room.checks[parameter.step] & parameter.operand) != 0;
    return is_checked_by_step || m_kernels.are_plain(buffer, count);
}

// False where a row is not ordinary.
bool Blocks::run(Room& room, std::size_t first, std::size_t count, Values values) const {
    bool ordinary = true;
    for (const Parameter& parameter : m_parameters) {
        ordinary = read(room, parameter, first, count, values) && ordinary;
    }
    double* const results = room.results + first;
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        const BlockStep& step = m_steps[i];
        const double* left = room.buffers[step.left];
        const double* right = room.buffers[step.right];
        double* result = step.result == 0 ? results : room.memory(step.result);
        const BlockKernel compute =
            kernel(step, values == Values::plain ? room.checks[i] : unsigned{check_none});
        const bool computed = compute != nullptr
                                  ? compute(left, right, result, count)
                                  : compute_rows(step.kind, step.code, left, right, result, count);
        ordinary = ordinary && computed;
    }
    if (m_steps.empty()) std::copy_n(room.buffers[m_result], count, results);
    return ordinary;
}

void Blocks::compute(std::span<const Column> columns, std::size_t rows, double* results,
                     const std::function<void(std::size_t row)>& tell) const {
    if (rows == 0) return;
    Room room(*this, columns, results);
    for (std::size_t first = 0; first < rows; first += rows_of_block) {
        const std::size_t end = std::min(first + rows_of_block, rows);
        if (run(room, first, end - first, Values::plain) ||
            run(room, first, end - first, Values::any)) {
            continue;
        }
        for (std::size_t piece = first; piece < end; piece += rows_of_piece) {
            const std::size_t piece_end = std::min(piece + rows_of_piece, end);
            if (run(room, piece, piece_end - piece, Values::any)) continue;
            for (std::size_t row = piece; row < piece_end; ++row) tell(row);
        }
    }
}

}  // namespace morandel
