#include "engine/block_kernels.h"

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Basic;

const BlockKernels& choose_kernels() {
#if defined(__linux__) && defined(__x86_64__)
    const bool has_avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    const bool has_avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");
    return has_avx512 ? avx512_kernels : has_avx2 ? avx2_kernels : basic_kernels;
#else
    return basic_kernels;
#endif
}

}  // namespace

const BlockKernels basic_kernels = kernels_of_set<Basic>;

const BlockKernels& block_kernels() {
    static const BlockKernels& kernels = choose_kernels();
    return kernels;
}

}  // namespace morandel
