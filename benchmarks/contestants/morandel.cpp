#include <morandel.h>
#include <morandel/formula.hpp>

#include <deque>
#include <memory>
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

morandel::Formula prepared_formula(const std::string& text, const std::vector<std::string>& names,
                                   morandel::Kind kind) {
    std::vector<morandel::Name> list;
    for (const std::string& name : names) list.emplace_back(name, kind);
    return {text, list};
}

morandel_column column(const Numbers& numbers) {
    return {MORANDEL_NUMBER, numbers.data(), sizeof(double), nullptr, nullptr, 0, 0};
}
morandel_column column(const Texts& texts) {
    return {MORANDEL_TEXT,       nullptr,           0, texts.bytes.data(), texts.offsets.data(),
            sizeof(std::size_t), texts.bytes.size()};
}
template <class Column>
std::vector<morandel_column> list(const std::vector<Column>& columns, std::size_t count) {
    std::vector<morandel_column> all;
    for (std::size_t i = 0; i < count; ++i) all.push_back(column(columns[i]));
    return all;
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

    bool has_prepared() const override { return true; }
    double prepared(std::size_t index, const std::vector<double>& values) override {
        return m_prepared[index].prepared.compute_numbers(values.data(), values.size());
    }

    bool has_columns() const override { return true; }
    Work columns(const ColumnFormula& formula, const std::vector<Numbers>& columns,
                 double* results) override {
        return
            [prepared = prepared_formula(formula.morandel, formula.names, morandel::Kind::number),
             given = list(columns, formula.names.size()),
             status = std::make_shared<std::vector<unsigned char>>(columns[0].rows()), results] {
                morandel_formula_columns(prepared.handle(), given.data(), given.size(),
                                         status->size(), results, status->data(), nullptr);
            };
    }
    Work row_by_row(const ColumnFormula& formula, const std::vector<Numbers>& columns,
                    double* results) override {
        const Formula text = {"", formula.morandel, "", "", formula.names};
        return [prepared = std::make_shared<Prepared>(text), &columns, results] {
            std::vector<double> values(prepared->parameters.size());
            for (std::size_t row = 0; row < columns[0].rows(); ++row) {
                for (std::size_t i = 0; i < values.size(); ++i) values[i] = columns[i].data()[row];
                set_values(prepared->evaluator, prepared->parameters, values);
                results[row] = compute(prepared->evaluator, prepared->formula);
            }
        };
    }

    Work text_columns(const TextFormula& formula, const std::vector<Texts>& columns,
                      Texts* copy) override {
        return [prepared = prepared_formula(formula.morandel, {"s", "t"}, morandel::Kind::text),
                given = list(columns, columns.size()),
                status = std::make_shared<std::vector<unsigned char>>(text_rows), copy] {
            morandel_texts* made = nullptr;
            morandel_formula_text_columns(prepared.handle(), given.data(), given.size(), text_rows,
                                          &made, status->data(), nullptr);
            const std::unique_ptr<morandel_texts, decltype(&morandel_texts_free)> owned(
                made, morandel_texts_free);
            if (copy == nullptr) return;
            const std::size_t* offsets = morandel_texts_offsets(made);
            copy->bytes.assign(morandel_texts_bytes(made, nullptr), offsets[text_rows]);
            copy->offsets.assign(offsets, offsets + text_rows + 1);
        };
    }
    Work text_row_by_row(const TextFormula& formula, const std::vector<Texts>& columns,
                         Texts* copy) override {
        return [this, &formula, &columns, copy, made = std::make_shared<Texts>()] {
            made->bytes.clear();
            made->offsets.resize(1);
            m_evaluator.ClearOld();
            m_evaluator.SetNumberOfPara(2);
            for (std::size_t row = 0; row < text_rows; ++row) {
                for (std::size_t i = 0; i < m_texts.size(); ++i) {
                    const std::size_t* at = &columns[i].offsets[row];
                    m_texts[i].strValue.assign(columns[i].bytes, at[0], at[1] - at[0]);
                    m_evaluator.SetPara(&m_texts[i], static_cast<int>(i) + 1, true);
                }
                m_evaluator.SetExpression(formula.morandel.c_str());
                m_evaluator.CalcExpression();
                made->add(m_evaluator.m_StrResult);
            }
            if (copy != nullptr) *copy = *made;
        };
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
        explicit Prepared(const Formula& text)
            : formula(text),
              parameters(records(text.names)),
              prepared(prepared_formula(text.morandel, text.names, morandel::Kind::number)) {
            evaluator.SetNumberOfPara(static_cast<int>(parameters.size()));
        }
        Formula formula;
        std::vector<MYPARA> parameters;
        morandel::Formula prepared;
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
