// One contestant, all measures, a line each: "measure", tab, nanoseconds.
//     runner values                   every value that is measured, for comparison
//     runner time SECONDS [BEGIN]     each measure, or those that begin so, for about so long
//     runner columns                  the formulas of columns, for contestants in Python
//     runner list                     the measures' names
//     runner count MEASURE ROUNDS     does it so often and prints how much work that was

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/contestant.h"

namespace {

using namespace bench;

volatile double sink;

constexpr unsigned rounds_of_values = 16;
constexpr std::size_t checked_rows = 20'000;

using Work = Contestant::Work;

struct Measure {
    std::string name;
    std::function<void(unsigned round)> run;  // one piece of work, or works of them
    unsigned works = 1;
};

std::vector<std::vector<double>> values_of(const Formula& formula) {
    std::vector<std::vector<double>> all(rounds_of_values);
    for (unsigned round = 0; round < rounds_of_values; ++round) {
        all[round].resize(formula.names.size());
        fill(all[round], round);
    }
    return all;
}

// An order that no branch predictor learns.
const std::vector<std::size_t>& random_order() {
    static const std::vector<std::size_t> order = [] {
        std::mt19937 random(7);
        std::vector<std::size_t> all(4096);
        for (std::size_t& index : all) index = random() % pool().size();
        return all;
    }();
    return order;
}

const std::string text_s = std::string(60, 'x') + "needle" + std::string(34, 'y');
const std::string text_t = std::string(60, 'x') + "needle" + std::string(33, 'y') + "z";

void add_numeric(std::vector<Measure>& all, Contestant& c) {
    std::vector<Formula> prepared = twelve();
    prepared.insert(prepared.end(), pool().begin(), pool().end());
    c.prepare(prepared);

    for (std::size_t i = 0; i < twelve().size(); ++i) {
        const Formula& formula = twelve()[i];
        const auto values = values_of(formula);
        const auto add = [&](const char* mode, auto&& work) {
            all.push_back({std::string(mode) + formula.label, work});
        };
        add("one-shot ", [&c, &formula, values](unsigned round) {
            sink = c.one_shot(formula, values[round % rounds_of_values]);
        });
        add("new ", [&c, &formula, values](unsigned round) {
            sink = c.one_shot_new(formula, values[round % rounds_of_values]);
        });
        if (c.has_prepared()) {
            add("prepared ", [&c, i, values](unsigned round) {
                sink = c.prepared(i, values[round % rounds_of_values]);
            });
        }
        add("repeated ", [&c, i, values](unsigned round) {
            sink = c.repeated(i, values[round % rounds_of_values]);
        });
    }

    std::vector<std::vector<std::vector<double>>> values;
    for (const Formula& formula : pool()) values.push_back(values_of(formula));
    const auto works = static_cast<unsigned>(random_order().size());
    all.push_back({"one-shot pool",
                   [&c, values](unsigned round) {
                       for (const std::size_t i : random_order()) {
                           sink = c.one_shot(pool()[i], values[i][round % rounds_of_values]);
                       }
                   },
                   works});
    all.push_back({"repeated pool",
                   [&c, values](unsigned round) {
                       for (const std::size_t i : random_order()) {
                           sink =
                               c.repeated(twelve().size() + i, values[i][round % rounds_of_values]);
                       }
                   },
                   works});
    if (!c.has_prepared()) return;
    all.push_back({"prepared pool",
                   [&c, values](unsigned round) {
                       for (const std::size_t i : random_order()) {
                           sink =
                               c.prepared(twelve().size() + i, values[i][round % rounds_of_values]);
                       }
                   },
                   works});
}

void add_columns(std::vector<Measure>& all, Contestant& c) {
    for (const std::size_t rows : column_sizes()) {
        for (const ColumnFormula& formula : column_formulas()) {
            // Made when it is first run, since measures are also listed and counted.
            const auto work = std::make_shared<Work>();
            const std::string size = std::to_string(rows);
            all.push_back({std::string(formula.group) + ' ' + size + ' ' + formula.morandel,
                           [&c, &formula, rows, work](unsigned) {
                               if (!*work) {
                                   const auto results = std::make_shared<Numbers>(rows);
                                   *work =
                                       [run = c.columns(formula, columns_of(rows), results->data()),
                                        results] { run(); };
                               }
                               (*work)();
                           },
                           static_cast<unsigned>(rows)});
        }
    }
    for (const TextFormula& formula : texts()) {
        if (!formula.gives_text) continue;
        const Work columns = c.text_columns(formula, columns_of_texts(), nullptr);
        const Work rows = c.text_row_by_row(formula, columns_of_texts(), nullptr);
        if (!columns) continue;
        const auto add = [&](const char* group, const Work& work) {
            all.push_back({std::string(group) + formula.label, [work](unsigned) { work(); },
                           static_cast<unsigned>(text_rows)});
        };
        add("columns-texts ", columns);
        add("rows-texts ", rows);
    }
}

std::vector<Measure> measures(Contestant& c) {
    std::vector<Measure> all;
    add_numeric(all, c);
    if (c.has_texts()) {
        for (const TextFormula& formula : texts()) {
            all.push_back({std::string("text ") + formula.label, [&c, &formula](unsigned) {
                               sink = c.text_one_shot(formula, text_s, text_t);
                           }});
        }
    }
    all.push_back({"batch in order", [&c](unsigned) { sink = c.batch(batch()); }});
    if (c.has_columns()) add_columns(all, c);
    if (c.has_backwards()) {
        all.push_back({"batch backwards", [&c](unsigned) { sink = c.batch_backwards(batch()); }});
    }
    return all;
}

double nanoseconds(const Measure& measure, double seconds) {
    using Clock = std::chrono::steady_clock;
    unsigned round = 0;
    unsigned block = 1;
    measure.run(round);
    while (true) {
        const auto start = Clock::now();
        for (unsigned i = 0; i < block; ++i) measure.run(++round);
        const double taken = std::chrono::duration<double>(Clock::now() - start).count();
        if (taken >= seconds) return taken * 1e9 / block / measure.works;
        const double whole = taken > 0.0 ? block * seconds / taken * 1.05 + 1.0 : 1e9;
        block = taken < seconds / 50 ? block * 8 : static_cast<unsigned>(whole);
    }
}

void print_values(Contestant& c) {
    std::vector<Formula> formulas = twelve();
    formulas.insert(formulas.end(), pool().begin(), pool().end());
    c.prepare(formulas);
    for (std::size_t i = 0; i < formulas.size(); ++i) {
        const Formula& formula = formulas[i];
        for (const auto& values : values_of(formula)) {
            const char* text = formula.morandel.c_str();
            std::printf("%s\t%.11g\n", text, c.one_shot(formula, values));
            std::printf("new %s\t%.11g\n", text, c.one_shot_new(formula, values));
            std::printf("repeated %s\t%.11g\n", text, c.repeated(i, values));
            if (c.has_prepared()) {
                std::printf("prepared %s\t%.11g\n", text, c.prepared(i, values));
            }
        }
    }
    std::printf("batch\t%.11g\n", c.batch(batch()));
    if (c.has_backwards()) std::printf("batch\t%.11g\n", c.batch_backwards(batch()));
    if (!c.has_texts()) return;
    for (const TextFormula& formula : texts()) {
        std::printf("%s\t%.11g\n", formula.morandel.c_str(),
                    c.text_one_shot(formula, text_s, text_t));
    }
}

void print_columns(Contestant& c) {
    if (!c.has_columns()) return;
    const std::vector<Numbers>& columns = columns_of(checked_rows);
    const Numbers results(checked_rows);
    for (const ColumnFormula& formula : column_formulas()) {
        const auto print = [&](const char* how, const Work& work) {
            if (!work) return;
            work();
            for (std::size_t row = 0; row < checked_rows; row += 7) {
                std::printf("%s %s\t%.17g\n", how, formula.morandel.c_str(), results.data()[row]);
            }
        };
        print("columns", c.columns(formula, columns, results.data()));
        print("rows", c.row_by_row(formula, columns, results.data()));
    }
    for (const TextFormula& formula : texts()) {
        Texts made;
        const auto print = [&](const char* how, const Work& work) {
            if (!work) return;
            work();
            std::string all = made.bytes;
            for (const std::size_t offset : made.offsets) all += ' ' + std::to_string(offset);
            std::printf("%s texts %s\t%zu\n", how, formula.label, std::hash<std::string>()(all));
        };
        if (!formula.gives_text) continue;
        print("columns", c.text_columns(formula, columns_of_texts(), &made));
        print("rows", c.text_row_by_row(formula, columns_of_texts(), &made));
    }
}

// For contestants in other languages.
void print_column_formulas() {
    for (const std::size_t rows : column_sizes()) {
        for (const ColumnFormula& formula : column_formulas()) {
            std::printf("%s\t%zu\t%s\t%s\t", formula.group, rows, formula.morandel.c_str(),
                        formula.python.c_str());
            for (const std::string& name : formula.names) std::printf("%s ", name.c_str());
            std::printf("\n");
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    Contestant& c = contestant();
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "values" && argc == 2) {
        print_values(c);
        print_columns(c);
    } else if (mode == "columns" && argc == 2) {
        print_column_formulas();
    } else if (mode == "list" && argc == 2) {
        for (const Measure& measure : measures(c)) std::printf("%s\n", measure.name.c_str());
    } else if (mode == "time" && (argc == 3 || argc == 4)) {
        for (const Measure& measure : measures(c)) {
            if (argc == 4 && !measure.name.starts_with(argv[3])) continue;
            std::printf("%s\t%.4f\n", measure.name.c_str(),
                        nanoseconds(measure, std::atof(argv[2])));
        }
    } else if (mode == "count" && argc == 4) {
        for (const Measure& measure : measures(c)) {
            if (measure.name != argv[2]) continue;
            for (unsigned round = 0; round < std::strtoul(argv[3], nullptr, 10); ++round) {
                measure.run(round);
            }
            std::printf("%u\n", measure.works);
        }
    } else {
        std::fprintf(
            stderr,
            "usage: %s values | columns | list | time SECONDS [BEGIN] | count MEASURE ROUNDS\n",
            argv[0]);
        return 2;
    }
    return 0;
}
