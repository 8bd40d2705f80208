// What it costs to have pending numbers of each thread: the least nanoseconds of building an
// evaluator and of one evaluation each. benchmarks/state runs it.

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <morandel.h>

namespace {

template <class Work>
void print_nanoseconds(const Work& work) {
    constexpr int works = 2'000;
    double least = 1e300;
    for (int round = 0; round < 100; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < works; ++i) work();
        const std::chrono::duration<double, std::nano> taken =
            std::chrono::steady_clock::now() - start;
        least = std::min(least, taken.count() / works);
    }
    std::printf("\t%.1f", least);
}

void print_evaluation(const char* formula) {
    CExpress e;
    MYPARA s{"s", 0.0, "text"};
    MYPARA a{"a", 2.5, ""};
    e.SetNumberOfPara(2);
    e.SetPara(&s, 1, true);
    e.SetPara(&a, 2, false);
    print_nanoseconds([&] {
        e.SetExpression(formula);
        e.CalcExpression();
    });
}

}  // namespace

int main() {
    print_nanoseconds([] { const CExpress e; });
    print_evaluation("strsub(s, 2, 2)");
    print_evaluation("strcat(s, \"x\", s)");
    print_evaluation("a*2+1");
    std::printf("\n");
}
