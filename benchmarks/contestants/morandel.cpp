#include "morandel.h"

#include <deque>
#include <unordered_map>

#include "benchmarks/contestant.h"

namespace {

using namespace bench;

// The records a host keeps for its names.
std::vector<MYPARA> records(const std::vector<std::string>& names) {
    std::vector<MYPARA> all;
    for (const std::string& name : names) all.push_back({name, 0.0, ""});
    return all;
}

void set_values(CExpress& e, std::vector<MYPARA>& parameters, const std::vector<double>& values) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        parameters[i].value = values[i];
        e.SetPara(&parameters[i], static_cast<int>(i) + 1, false);
    }
}

double compute(CExpress& e, const Formula& formula) {
    e.SetExpression(formula.morandel.c_str());
    e.CalcExpression();
    return e.GetResult();
}

class Morandel final : public Contestant {
  public:
    double one_shot(const Formula& formula, const std::vector<double>& values) override {
        return bound(m_evaluator, formula, values);
    }
    double one_shot_new(const Formula& formula, const std::vector<double>& values) override {
        CExpress e;
        return bound(e, formula, values);
    }

    void prepare(const std::vector<Formula>& formulas) override {
        m_prepared.clear();
        for (const Formula& formula : formulas) m_prepared.emplace_back(formula);
    }
    double repeated(std::size_t index, const std::vector<double>& values) override {
        Prepared& prepared = m_prepared[index];
        set_values(prepared.evaluator, prepared.parameters, values);
        return compute(prepared.evaluator, prepared.formula);
    }

    bool has_texts() const override { return true; }
    double text_one_shot(const TextFormula& formula, const std::string& s,
                         const std::string& t) override {
        m_texts[0].strValue = s;
        m_texts[1].strValue = t;
        m_evaluator.ClearOld();
        m_evaluator.SetNumberOfPara(2);
        m_evaluator.SetPara(&m_texts[0], 1, true);
        m_evaluator.SetPara(&m_texts[1], 2, true);
        m_evaluator.SetExpression(formula.morandel.c_str());
        m_evaluator.CalcExpression();
        return formula.gives_text ? static_cast<double>(m_evaluator.m_StrResult.size())
                                  : m_evaluator.GetResult();
    }

    double batch(const std::vector<Definition>& definitions) override {
        m_list.Free();
        for (const Definition& definition : definitions) append(definition);
        m_list.Cal();
        return m_list.FindByNameAndGetValue(definitions.back().name.c_str());
    }
    bool has_backwards() const override { return true; }
    double batch_backwards(const std::vector<Definition>& definitions) override {
        m_list.Free();
        for (auto it = definitions.rbegin(); it != definitions.rend(); ++it) append(*it);
        m_list.Cal();
        return m_list.FindByNameAndGetValue(definitions.back().name.c_str());
    }

  private:
    struct Prepared {
        explicit Prepared(const Formula& text) : formula(text), parameters(records(text.names)) {
            evaluator.SetNumberOfPara(static_cast<int>(parameters.size()));
        }
        Formula formula;
        std::vector<MYPARA> parameters;
        CExpress evaluator;
    };

    double bound(CExpress& e, const Formula& formula, const std::vector<double>& values) {
        auto found = m_records.find(&formula);
        if (found == m_records.end()) {
            found = m_records.emplace(&formula, records(formula.names)).first;
        }
        // A formula that is loaded again would not be read again.
        e.ClearOld();
        e.SetNumberOfPara(static_cast<int>(values.size()));
        set_values(e, found->second, values);
        return compute(e, formula);
    }

    void append(const Definition& definition) {
        m_list.Append(CVariableExpress::computed, definition.name.c_str(), 0.0,
                      definition.formula.morandel.c_str());
    }

    CExpress m_evaluator;
    std::deque<Prepared> m_prepared;
    std::unordered_map<const Formula*, std::vector<MYPARA>> m_records;
    std::vector<MYPARA> m_texts = {{"s", 0.0, ""}, {"t", 0.0, ""}};
    CVariableExpressList m_list;
};

}  // namespace

bench::Contestant& bench::contestant() {
    static Morandel one;
    return one;
}
