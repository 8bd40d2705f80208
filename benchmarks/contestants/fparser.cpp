#include <fparser.hh>

#include <deque>
#include <unordered_map>

#include "benchmarks/contestant.h"

namespace {

using namespace bench;

std::string joined(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : ",") + name;
    return all;
}

class FunctionParserContestant final : public Contestant {
  public:
    double one_shot(const Formula& formula, const std::vector<double>& values) override {
        return parsed(m_parser, formula, values);
    }
    double one_shot_new(const Formula& formula, const std::vector<double>& values) override {
        FunctionParser parser;
        return parsed(parser, formula, values);
    }

    void prepare(const std::vector<Formula>& formulas) override {
        m_prepared.clear();
        for (const Formula& formula : formulas) {
            FunctionParser& parser = m_prepared.emplace_back();
            parser.Parse(formula.infix, joined(formula.names));
            parser.Optimize();
        }
    }
    double repeated(std::size_t index, const std::vector<double>& values) override {
        return m_prepared[index].Eval(values.data());
    }

    double batch(const std::vector<Definition>& definitions) override {
        std::vector<double> values;
        for (const Definition& definition : definitions) {
            values.clear();
            for (const std::string& name : definition.formula.names) {
                values.push_back(m_results[name]);
            }
            m_results[definition.name] = one_shot(definition.formula, values);
        }
        return m_results[definitions.back().name];
    }

  private:
    double parsed(FunctionParser& parser, const Formula& formula,
                  const std::vector<double>& values) {
        std::string& names = m_names[&formula];
        if (names.empty()) names = joined(formula.names);
        parser.Parse(formula.infix, names);
        return parser.Eval(values.data());
    }

    FunctionParser m_parser;
    std::deque<FunctionParser> m_prepared;
    std::unordered_map<const Formula*, std::string> m_names;
    std::unordered_map<std::string, double> m_results;
};

}  // namespace

bench::Contestant& bench::contestant() {
    static FunctionParserContestant one;
    return one;
}
