// What only Morandel has, or has in a form that nothing compares with: "measure", tab, value, tab,
// unit.
//     host | host threads COUNT | host columns COUNT

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>

#include <morandel.h>
#include <morandel/formula.hpp>
#include "benchmarks/columns.h"
#include "benchmarks/workload.h"

namespace {

using Clock = std::chrono::steady_clock;

volatile double sink;

double seconds_since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

template <class Work>
double nanoseconds(std::size_t works, const Work& work) {
    double least = 1e300;
    for (int round = 0; round < 5; ++round) {
        const auto start = Clock::now();
        for (std::size_t i = 0; i < works; ++i) work(i);
        least = std::min(least, seconds_since(start) * 1e9 / static_cast<double>(works));
    }
    return least;
}

void print(const std::string& measure, double value, const char* unit) {
    std::printf("%s\t%.1f\t%s\n", measure.c_str(), value, unit);
}

std::size_t heap_of_an_evaluator() {
    constexpr std::size_t count = 1000;
    const std::size_t before = mallinfo2().uordblks;
    std::vector<CExpress> evaluators(count);
    return (mallinfo2().uordblks - before) / count - sizeof(CExpress);
}

void measure_evaluator() {
    print("an evaluator built and destroyed",
          nanoseconds(100'000,
                      [](std::size_t) {
                          const CExpress e;
                          sink = e.m_Status;
                      }),
          "ns");
    print("size of an evaluator, what it holds included",
          static_cast<double>(sizeof(CExpress) + heap_of_an_evaluator()), "bytes");

    // What is bound and not used costs nothing.
    for (const int count : {1, CExpress::max_parameters}) {
        CExpress e;
        e.SetNumberOfPara(count);
        for (int i = 1; i <= count; ++i) {
            MYPARA parameter{"name" + std::to_string(i), 1.0, ""};
            e.SetPara(&parameter, i, false);
        }
        print("one-shot with " + std::to_string(count) + " parameters, one of them used",
              nanoseconds(100'000,
                          [&](std::size_t i) {
                              e.SetExpression(i % 2 == 0 ? "name1*3" : "name1*4");
                              e.CalcExpression();
                              sink = e.GetResult();
                          }),
              "ns");
    }
}

void measure_checker() {
    CExpressionCheck check;
    const auto time = [&](const char* label, const char* formula) {
        print(std::string("checker, ") + label,
              nanoseconds(100'000,
                          [&](std::size_t) {
                              check.Reset();
                              sink = check.CheckExpression(formula) ? 1.0 : 0.0;
                          }),
              "ns");
    };
    time("a formula without faults", "sqrt(a^2+b^2)*strlen(\"text\")");
    time("a formula with three faults", "sqrt(\"a\")+strlen(1)*mod(2)");
}

void measure_lists() {
    for (const std::size_t count : {1'000U, 100'000U}) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < count; ++i) names.push_back("record" + std::to_string(i));
        CVariableExpressList list;
        const auto start = Clock::now();
        for (const std::string& name : names) {
            list.Append(CVariableExpress::given, name.c_str(), 1.0, "");
        }
        const double appended = seconds_since(start) * 1e9 / static_cast<double>(count);
        list.FindByName("record0");
        print("Append, a record of " + std::to_string(count), appended, "ns");
        print("lookup among " + std::to_string(count),
              nanoseconds(count,
                          [&](std::size_t i) {
                              sink = list.FindByNameAndGetValue(names[i * 7919 % count].c_str());
                          }),
              "ns");
    }
}

// Works a second of so many threads, each of which does as many.
double throughput(unsigned count, std::size_t works, const std::function<void()>& work) {
    work();
    double most = 0.0;
    for (int round = 0; round < 9; ++round) {
        const auto start = Clock::now();
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < count; ++i) threads.emplace_back(work);
        for (std::thread& thread : threads) thread.join();
        most = std::max(most, static_cast<double>(works * count) / seconds_since(start));
    }
    return most;
}

// Each thread with evaluators of its own.
double evaluations(unsigned count) {
    constexpr std::size_t rounds = 20'000;
    return throughput(count, rounds, [] {
        double sum = 0.0;
        CExpress e;
        for (std::size_t round = 0; round < rounds; ++round) {
            const bench::Formula& formula = bench::pool()[round % bench::pool().size()];
            e.SetNumberOfPara(static_cast<int>(formula.names.size()));
            for (std::size_t i = 0; i < formula.names.size(); ++i) {
                MYPARA parameter{formula.names[i], 1.5, ""};
                e.SetPara(&parameter, static_cast<int>(i) + 1, false);
            }
            e.SetExpression(formula.morandel.c_str());
            e.CalcExpression();
            sum += e.GetResult();
        }
        sink = sum;
    });
}

// Columns of + - * / that fit the second-level cache; the formulas are shared, the columns each
// thread's own.
double rows_by_columns(unsigned count) {
    constexpr std::size_t rows = 10'000;
    constexpr std::size_t rounds = 300;
    std::vector<morandel::Formula> formulas;
    for (const bench::ColumnFormula& formula : bench::column_formulas()) {
        if (std::string(formula.group) != "columns-sums") continue;
        formulas.emplace_back(formula.morandel,
                              std::initializer_list<morandel::Name>{"a", "b", "c", "d"});
    }
    const std::vector<bench::Numbers>& source = bench::columns_of(rows);
    return throughput(count, rows * rounds * formulas.size(), [&] {
        std::vector<std::vector<double>> own;
        for (const bench::Numbers& numbers : source) {
            own.emplace_back(numbers.data(), numbers.data() + rows);
        }
        std::vector<morandel_column> given;
        for (const std::vector<double>& numbers : own) {
            given.push_back(morandel::Column(numbers).column());
        }
        std::vector<double> results(rows);
        std::vector<unsigned char> status(rows);
        for (std::size_t round = 0; round < rounds; ++round) {
            for (const morandel::Formula& formula : formulas) {
                morandel_formula_columns(formula.handle(), given.data(), given.size(), rows,
                                         results.data(), status.data(), nullptr);
            }
        }
        sink = results[0];
    });
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc == 3 ? argv[1] : "";
    const auto count = static_cast<unsigned>(argc == 3 ? std::atoi(argv[2]) : 1);
    if (what == "threads" || what == "columns") {
        const bool by_rows = what == "columns";
        print(std::string(by_rows ? "rows by columns" : "evaluations") + ", threads: " + argv[2],
              (by_rows ? rows_by_columns(count) : evaluations(count)) / 1e6, "million a second");
        return 0;
    }
    measure_evaluator();
    measure_checker();
    measure_lists();
    return 0;
}
