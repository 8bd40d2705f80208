// A hundred threads at once, for as long as one likes: prepared formulas that they share, columns,
// evaluators, checkers and lists. Each gives, every time, what it gave alone, and memory stays
// flat.
//     soak SECONDS

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <morandel.h>
#include <morandel/formula.hpp>
#include "tests/resident.h"

namespace {

std::string prepared() {
    static const morandel::Formula numbers("mod(x, 7)+1/(x-2)", {"x"});
    static const morandel::Formula texts("strcat(strsub(name, 1, 4), \"·\", r2s(x, 3))",
                                         {"name", "x"});
    std::string log;
    for (int i = 0; i < 100; ++i) {
        const double x = i + 3.5;
        log += std::to_string(numbers.compute_numbers(&x, 1)) + texts("苹果", x).text();
    }
    try {
        log += texts("😀", 1.0).text();
    } catch (const morandel::Error& error) {
        log += error.message();
    }
    return log;
}

std::string columns() {
    static const morandel::Formula formula("sqrt(a*a+b)/(a-100)", {"a", "b"});
    std::vector<double> a(2000);
    for (std::size_t row = 0; row < a.size(); ++row) a[row] = static_cast<double>(row);
    std::vector<double> results;
    std::string log;
    for (const unsigned char status : formula.columns({a, a}, results))
        log += static_cast<char>('0' + status);
    for (const double result : results) log += std::to_string(result) + ' ';
    return log;
}

std::string evaluators() {
    std::string log;
    CExpress evaluator;
    MYPARA a{"a", 5.0, ""};
    MYPARA s{"s", 0.0, "some text"};
    evaluator.SetNumberOfPara(2);
    for (int round = 0; round < 10; ++round) {
        evaluator.SetPara(&a, 1, false);
        evaluator.SetPara(&s, 2, true);
        for (const char* formula :
             {"a*2+1", "strcat(s, s, s)", "strfind(\"o\", s, 1, a)", "if(a > 2, a, 2)", "1/(a-5)",
              "strreplace(\"x\", \"e\", s)", "strcase(s, 1, 2, 3)", "(a+"}) {
            evaluator.SetExpression(formula);
            evaluator.CalcExpression();
            log += std::to_string(evaluator.GetResult()) + evaluator.m_StrResult +
                   evaluator.m_ErrorMessage;
        }
    }
    return log;
}

std::string checkers() {
    std::string log;
    CExpressionCheck check;
    for (const char* formula :
         {"sqrt(\"a\")+strlen(1)", "a*2+1", "left(1, 2)", "\"a\" = 2", "(1+"}) {
        check.Reset();
        log += check.CheckExpression(formula) ? '1' : '0';
        for (const CheckexpressionError& fault : check.m_errors)
            log += fault.strName + std::to_string(fault.nPosition);
    }
    return log;
}

std::string lists() {
    CVariableExpressList list;
    for (int i = 50; i > 0; --i) {
        const std::string formula = "v" + std::to_string(i - 1) + "*1.5+1";
        list.Append(CVariableExpress::computed, ("v" + std::to_string(i)).c_str(), 0.0,
                    formula.c_str());
    }
    list.Append(CVariableExpress::given, "v0", 2.0, "");
    list.Cal();
    return std::to_string(list.FindByNameAndGetValue("v50"));
}

struct Role {
    const char* name;
    int threads;
    std::string (*work)();
    std::string alone{};
    std::atomic<long> rounds = 0;
    std::atomic<long> different = 0;
};

}  // namespace

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    const auto length = std::chrono::seconds(argc > 1 ? std::atol(argv[1]) : 60);
    std::array<Role, 5> roles = {{{"prepared formulas", 40, prepared},
                                  {"columns", 20, columns},
                                  {"evaluators", 20, evaluators},
                                  {"checkers", 10, checkers},
                                  {"lists", 10, lists}}};
    const Clock::time_point begin = Clock::now();
    std::vector<std::thread> threads;
    for (Role& role : roles) {
        role.alone = role.work();
        for (int i = 0; i < role.threads; ++i) {
            threads.emplace_back([&role, begin, length] {
                while (Clock::now() - begin < length) {
                    if (role.work() != role.alone) ++role.different;
                    ++role.rounds;
                }
            });
        }
    }
    std::this_thread::sleep_until(begin + length / 5);
    const long before = morandel::tests::resident();
    for (std::thread& thread : threads) thread.join();
    const long grown = morandel::tests::resident() - before;

    bool failed = grown > 4096;
    for (const Role& role : roles) {
        std::printf("%s: %d threads, %ld rounds, %ld different\n", role.name, role.threads,
                    role.rounds.load(), role.different.load());
        failed = failed || role.different != 0 || role.rounds == 0;
    }
    std::printf("memory: %ld KiB after a fifth of the time, %ld KiB more at the end\n", before,
                grown);
    return failed ? 1 : 0;
}
