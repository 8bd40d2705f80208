#include "engine/block_kernels.h"

#include "engine/block_loops.h"

namespace morandel {
namespace {

struct Basic;

const BlockKernels& choose_kernels() {
#if defined(__linux__) && defined(__x86_64__)
    // Each with all that those before it have.
    static constexpr const BlockKernels* widest[] = {&basic_kernels, &avx2_kernels,
                                                     &avx512_kernels};
    const bool has_avx2 =
        (__builtin_cpu_supports("avx2") != 0) & (__builtin_cpu_supports("fma") != 0);
    const bool has_avx512 = has_avx2 & (__builtin_cpu_supports("avx512f") != 0) &
                            (__builtin_cpu_supports("avx512dq") != 0);
    return *widest[int{has_avx2} + int{has_avx512}];
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
