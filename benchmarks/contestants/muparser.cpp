#include <muParser.h>

#include <cmath>
#include <deque>
#include <memory>

#include "benchmarks/contestant.h"

namespace {

using namespace bench;

double logical_and(double a, double b) { return a != 0.0 && b != 0.0 ? 1.0 : 0.0; }

double round_down(double x) { return std::floor(x); }

// muParser keeps pointers to the variables, so the values lie beside the parser.
struct Bound {
    mu::Parser parser;
    std::vector<double> values;

    Bound() {
        parser.DefineFun("floor", round_down);
        parser.DefineOprt("&", logical_and, 1);
    }

    double load_and_compute(const Formula& formula, const std::vector<double>& given) {
        values = given;
        parser.ClearVar();
        for (std::size_t i = 0; i < values.size(); ++i) {
            parser.DefineVar(formula.names[i], &values[i]);
        }
        parser.SetExpr(formula.infix);
        return parser.Eval();
    }
};

class MuParserContestant final : public Contestant {
  public:
    double one_shot(const Formula& formula, const std::vector<double>& values) override {
        return m_bound.load_and_compute(formula, values);
    }
    double one_shot_new(const Formula& formula, const std::vector<double>& values) override {
        Bound bound;
        return bound.load_and_compute(formula, values);
    }

    void prepare(const std::vector<Formula>& formulas) override {
        m_prepared.clear();
        for (const Formula& formula : formulas) {
            m_prepared.emplace_back().load_and_compute(
                formula, std::vector<double>(formula.names.size(), 1.0));
        }
    }
    double repeated(std::size_t index, const std::vector<double>& values) override {
        Bound& bound = m_prepared[index];
        std::copy(values.begin(), values.end(), bound.values.begin());
        return bound.parser.Eval();
    }

    bool has_columns() const override { return true; }
    Work columns(const ColumnFormula& formula, const std::vector<Numbers>& columns,
                 double* results) override {
        auto parser = std::make_shared<mu::Parser>();
        for (std::size_t i = 0; i < formula.names.size(); ++i) {
            parser->DefineVar(formula.names[i], columns[i].data());
        }
        parser->SetExpr(formula.muparser);
        return [parser, results, rows = static_cast<int>(columns[0].rows())] {
            parser->Eval(results, rows);
        };
    }

    double batch(const std::vector<Definition>& definitions) override {
        m_results.resize(definitions.size());
        m_bound.parser.ClearVar();
        for (std::size_t i = 0; i < definitions.size(); ++i) {
            m_bound.parser.SetExpr(definitions[i].formula.infix);
            m_results[i] = m_bound.parser.Eval();
            m_bound.parser.DefineVar(definitions[i].name, &m_results[i]);
        }
        return m_results.back();
    }

  private:
    Bound m_bound;
    std::deque<Bound> m_prepared;
    std::vector<double> m_results;
};

}  // namespace

bench::Contestant& bench::contestant() {
    static MuParserContestant one;
    return one;
}
