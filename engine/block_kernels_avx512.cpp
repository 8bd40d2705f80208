// Compiled for processors that have these vectors, and run on those alone.

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Avx512;

}  // namespace

const BlockKernels avx512_kernels = kernels_of_set<Avx512>;

}  // namespace morandel
