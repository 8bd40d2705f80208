// The registered object in two apartments, for as long as one likes: each gives, every time, what
// it gives, and the memory of the process stays flat.
//     soak_object SECONDS

#include <windows.h>

#include <psapi.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/automation/host.h"

namespace {

using morandel::hosts::Apartment;
using morandel::hosts::Host;
using morandel::hosts::six_times_seven;
using morandel::hosts::Variant;
using Clock = std::chrono::steady_clock;

std::atomic<long> rounds = 0;
std::atomic<long> different = 0;

bool finds_the_fault(const Host& host) {
    const Variant formula(std::wstring(L"sqrt(\"a\")"));
    Variant result;
    Variant count;
    host.call(L"ExpressionCheck", {formula, result.by_reference(), count.by_reference()});
    return V_VT(&count) == VT_I4 && V_I4(&count) == 1;
}

// Of this process, in memory, as KiB.
long resident() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<long>(counters.WorkingSetSize / 1024);
}

void work_until(Clock::time_point end) {
    const Apartment apartment;
    const Host kept;
    while (Clock::now() < end) {
        const Host made;
        const bool same =
            finds_the_fault(made) && six_times_seven(kept) == 42.0 && six_times_seven(made) == 42.0;
        if (!same) ++different;
        ++rounds;
    }
}

}  // namespace

int main(int argc, char** argv) {
    const auto length = std::chrono::seconds(argc > 1 ? std::atol(argv[1]) : 60);
    const Clock::time_point begin = Clock::now();
    std::thread first(work_until, begin + length);
    std::thread second(work_until, begin + length);
    std::this_thread::sleep_until(begin + length / 5);
    const long before = resident();
    first.join();
    second.join();
    const long grown = resident() - before;
    std::printf("object in two apartments: %ld rounds, %ld different\n", rounds.load(),
                different.load());
    std::printf("memory: %ld KiB after a fifth of the time, %ld KiB more at the end\n", before,
                grown);
    return different != 0 || rounds == 0 || grown > 4096 ? 1 : 0;
}
