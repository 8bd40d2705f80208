// What a contestant of the benchmark does. A new one is one file that defines contestant().

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/columns.h"
#include "benchmarks/workload.h"

namespace bench {

class Contestant {
  public:
    virtual ~Contestant() = default;

    // Values bound by name, text loaded, evaluated, result read; on an evaluator that is kept.
    virtual double one_shot(const Formula& formula, const std::vector<double>& values) = 0;
    // The same with a new evaluator.
    virtual double one_shot_new(const Formula& formula, const std::vector<double>& values) = 0;

    // Makes formulas ready that are then computed again and again, each with new values, the
    // cheapest way the contestant has.
    virtual void prepare(const std::vector<Formula>& formulas) = 0;
    virtual double repeated(std::size_t index, const std::vector<double>& values) = 0;
    // The same with values handed over as an array, where repeated() binds them by name.
    [[nodiscard]] virtual bool has_prepared() const { return false; }
    virtual double prepared(std::size_t, const std::vector<double>&) { return 0.0; }

    [[nodiscard]] virtual bool has_columns() const { return false; }
    // What computes a formula for all rows of columns, as often as it is called; columns and
    // results outlive it. Empty where a contestant has no such thing.
    using Work = std::function<void()>;
    virtual Work columns(const ColumnFormula&, const std::vector<Numbers>&, double*) { return {}; }
    virtual Work row_by_row(const ColumnFormula&, const std::vector<Numbers>&, double*) {
        return {};
    }
    // The same for columns of texts. What was made is copied where that is asked for.
    virtual Work text_columns(const TextFormula&, const std::vector<Texts>&, Texts*) { return {}; }
    virtual Work text_row_by_row(const TextFormula&, const std::vector<Texts>&, Texts*) {
        return {};
    }

    // Texts, one-shot: s and t bound, text loaded, evaluated; the result is the length of a text,
    // or the number.
    [[nodiscard]] virtual bool has_texts() const { return false; }
    virtual double text_one_shot(const TextFormula&, const std::string&, const std::string&) {
        return 0.0;
    }

    // The definitions computed together, each by the values of those before it; the value of the
    // last. Backwards, the list is given from the last to the first.
    virtual double batch(const std::vector<Definition>& definitions) = 0;
    [[nodiscard]] virtual bool has_backwards() const { return false; }
    virtual double batch_backwards(const std::vector<Definition>&) { return 0.0; }
};

Contestant& contestant();

}  // namespace bench
