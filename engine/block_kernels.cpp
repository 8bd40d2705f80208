#include "engine/block_kernels.h"

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Basic;

#if defined(__linux__) && defined(__x86_64__)
bool has_avx2() { return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"); }
bool has_avx512() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");
}
const BlockKernels& choose_kernels() {
    return has_avx512() ? avx512_kernels : has_avx2() ? avx2_kernels : basic_kernels;
}
#else
const BlockKernels& choose_kernels() { return basic_kernels; }
#endif

}  // namespace

const BlockKernels basic_kernels = kernels_of_set<Basic>;

const BlockKernels& block_kernels() {
    static const BlockKernels& kernels = choose_kernels();
    return kernels;
}

}  // namespace morandel
