// Evaluations, checks and batch calculations of the case files' formulas without end: memory stays
// flat. ./test --endurance runs it; it is no test of every day.
//     endurance [COUNT]     of each kind, ten million unless given

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <morandel.h>
#include "tests/case_file.h"
#include "tests/resident.h"

namespace {

std::vector<std::string> formulas() {
    std::vector<std::string> all;
    const std::filesystem::path folder = MORANDEL_SOURCE_FOLDER "/tests/cases";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".cases") continue;
        for (const auto& block : morandel::cases::read_case_file(entry.path())) {
            for (const auto& line : block.lines) {
                // Texts of megabytes would make it a test of memcpy.
                if (!line.formula.empty() && line.verb.empty()) all.push_back(line.formula);
            }
        }
    }
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    const long count = argc > 1 ? std::atol(argv[1]) : 10'000'000;
    const std::vector<std::string> all = formulas();
    std::printf("%zu formulas\n", all.size());

    CExpress evaluator;
    CExpressionCheck check;
    CVariableExpressList list;
    long flat = 0;
    for (long i = 0; i < count; ++i) {
        // Pending texts fill up to their limit first.
        if (i == count / 5) flat = morandel::tests::resident();
        const std::string& formula = all[static_cast<std::size_t>(i) % all.size()];
        MYPARA a{"a", static_cast<double>(i % 1000), ""};
        MYPARA s{"s", 0.0, "some text"};
        evaluator.SetNumberOfPara(2);
        evaluator.SetPara(&a, 1, false);
        evaluator.SetPara(&s, 2, true);
        if (evaluator.SetExpression(formula.c_str()) == 1) evaluator.CalcExpression();

        check.Reset();
        check.CheckExpression(formula.c_str());

        list.Free();
        list.Append(CVariableExpress::computed, "y", 0.0, formula.c_str());
        list.Append(CVariableExpress::given, "a", static_cast<double>(i % 7), "");
        list.Cal();
    }
    const long grown = morandel::tests::resident() - flat;
    std::printf("%ld of each kind, memory grew by %ld KiB to %ld KiB\n", count, grown,
                morandel::tests::resident());
    return grown > 1024 ? 1 : 0;
}
