// How much memory this process has.

#pragma once

#include <fstream>

namespace morandel::tests {

// What is in memory, as KiB.
inline long resident() {
    std::ifstream statm("/proc/self/statm");
    long all = 0;
    long pages = 0;
    statm >> all >> pages;
    return pages * 4;
}

}  // namespace morandel::tests
