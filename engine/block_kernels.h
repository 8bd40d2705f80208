// What a step does to a block of rows at once. The loops are written so that compilers make vector
// code of them: no branch, no call, and what is wrong is gathered and told at the end.

#pragma once

#include <array>
#include <cstddef>

#include "language/operators.h"

namespace morandel {

// Computes so many rows; the result lies apart from both operands. False where a row meets an error
// or leaves the range; which one is not told.
using BlockKernel = bool (*)(const double* left, const double* right, double* result,
                             std::size_t count);

// Which operands of a step are values of names that nothing has looked at yet. A kernel that checks
// them gives false also where one is no number that parameters keep as it is.
enum CheckedOperands : unsigned {
    check_none = 0,
    check_left = 1,
    check_right = 2,
    check_kinds = 4
};

using KernelsByCode = std::array<BlockKernel, code_limit>;

struct BlockKernels {
    // By what they check, and by the code of a step; null where rows have to be computed one after
    // the other, or checked before.
    std::array<KernelsByCode, check_kinds> by_code;
    // Whether all are numbers that parameters keep as they are.
    bool (*are_plain)(const double* numbers, std::size_t count);
    // Gives numbers as parameters keep them. False where one is beyond the range.
    bool (*keep)(const double* numbers, double* kept, std::size_t count);
};

// For the widest vectors that this processor has.
const BlockKernels& block_kernels();

// Each for a set of instructions, for tests.
extern const BlockKernels basic_kernels;
extern const BlockKernels avx2_kernels;  // on Linux for 64-bit x86 alone, as is the next
extern const BlockKernels avx512_kernels;

}  // namespace morandel
