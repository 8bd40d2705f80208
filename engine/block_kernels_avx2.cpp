// Compiled for processors that have these vectors, and run on those alone.

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Avx2;

}  // namespace

const BlockKernels avx2_kernels = kernels_of_set<Avx2>;

}  // namespace morandel
