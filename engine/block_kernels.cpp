#include "engine/block_kernels.h"

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Basic;

const BlockKernels& choose_kernels() {
#if defined(__linux__) && defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq")) {
        return avx512_kernels;
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return avx2_kernels;
#endif
    return basic_kernels;
}

}  // namespace

const BlockKernels basic_kernels = kernels_of_set<Basic>;

const BlockKernels& block_kernels() {
    static const BlockKernels& kernels = choose_kernels();
    return kernels;
}

}  // namespace morandel
