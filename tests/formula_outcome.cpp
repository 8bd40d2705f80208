#include "tests/formula_outcome.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <sstream>

namespace morandel::tests {
namespace {

bool same_bits(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void take_error(morandel_error* error, ComputedValue& value) {
    value.error = morandel_error_number(error);
    morandel_position position;
    if (morandel_error_position(error, &position) == 1) value.position = position;
    morandel_error_free(error);
}

}  // namespace

std::string difference(const ComputedValue& evaluator, const ComputedValue& prepared,
                       std::size_t formula_size) {
    std::ostringstream out;
    out.precision(17);
    const auto expect = [&out](const char* what, const auto& a, const auto& b) {
        if (a != b) out << what << ' ' << b << " for " << a << "; ";
    };
    expect("refused", evaluator.refused, prepared.refused);
    expect("succeeded", evaluator.succeeded, prepared.succeeded);
    expect("error", evaluator.error, prepared.error);
    expect("type", evaluator.type, prepared.type);
    expect("text", evaluator.text, prepared.text);
    expect("as numbers", evaluator.as_numbers, prepared.as_numbers);
    if (!same_bits(evaluator.number, prepared.number)) {
        out << "number " << prepared.number << " for " << evaluator.number << "; ";
    }
    if (evaluator.free_names != prepared.free_names) out << "other free names; ";
    if (!prepared.succeeded) {
        const auto& at = prepared.position;
        if (!at) {
            out << "no position; ";
        } else if (at->byte + at->bytes > formula_size) {
            out << "a position beyond the formula; ";
        }
    }
    return out.str();
}

ComputedValue by_evaluator(const std::string& formula, const std::vector<NamedValue>& values) {
    CExpress e;
    e.SetNumberOfPara(static_cast<int>(values.size()));
    int index = 0;
    for (const NamedValue& value : values) {
        MYPARA para{value.name, value.number, value.text};
        e.SetPara(&para, ++index, value.is_text);
    }
    ComputedValue outcome;
    outcome.refused = e.SetExpression(formula.c_str()) == 0;
    outcome.succeeded = !outcome.refused && e.CalcExpression() == 1;
    outcome.error = e.GetErrorNumber();
    if (outcome.succeeded) {
        outcome.type = e.GetResultType();
        outcome.number = e.GetResult();
        // With a number it is what an operand has left.
        if (outcome.type == MORANDEL_TEXT) outcome.text = e.m_StrResult;
    }
    for (int i = 1; !outcome.refused && i <= e.GetVariableNum(); ++i) {
        int type = -1;
        std::string name = e.GetVariable(i, &type);
        outcome.free_names.emplace_back(std::move(name), type);
    }
    return outcome;
}

OwnedFormula prepare(const std::string& formula, const std::vector<NamedValue>& values, int flags,
                     bool tells_types, ComputedValue& refusal) {
    std::vector<morandel_name> names;
    for (const NamedValue& value : values) {
        const int type = value.is_text ? MORANDEL_TEXT : MORANDEL_NUMBER;
        names.push_back({value.name.data(), value.name.size(),
                         tells_types ? type : static_cast<int>(MORANDEL_DEDUCED)});
    }
    names.push_back({"", 0, MORANDEL_NUMBER});  // so that none is not all that the formula uses
    morandel_formula* made = nullptr;
    morandel_error* error = nullptr;
    if (morandel_formula_prepare(formula.data(), formula.size(), names.data(), values.size(), flags,
                                 &made, &error) == 0) {
        refusal = {};
        refusal.refused = true;
        take_error(error, refusal);
    }
    return OwnedFormula(made);
}

ComputedValue by_prepared(const morandel_formula* formula, const std::vector<NamedValue>& values) {
    ComputedValue outcome;
    std::vector<morandel_value> list;
    for (const NamedValue& value : values) {
        list.push_back(value.is_text ? morandel_text(value.text.data(), value.text.size())
                                     : morandel_number(value.number));
    }
    morandel_result* result = morandel_result_create();
    morandel_error* error = nullptr;
    outcome.succeeded =
        morandel_formula_compute(formula, list.data(), list.size(), result, &error) == 1;
    if (!outcome.succeeded) take_error(error, outcome);
    outcome.type = morandel_result_type(result);
    outcome.number = morandel_result_number(result);
    std::size_t size = 0;
    const char* text = morandel_result_text(result, &size);
    outcome.text.assign(text, size);
    morandel_result_free(result);
    if (std::none_of(values.begin(), values.end(),
                     [](const auto& value) { return value.is_text; })) {
        std::vector<double> numbers;
        for (const NamedValue& value : values) numbers.push_back(value.number);
        double number = 0.0;
        const bool gives =
            morandel_formula_compute_numbers(formula, numbers.data(), numbers.size(), &number) == 1;
        const bool is_number = outcome.succeeded && outcome.type != MORANDEL_TEXT;
        outcome.as_numbers =
            gives == is_number && same_bits(number, is_number ? outcome.number : 0.0);
    }
    for (std::size_t i = 0; i < morandel_formula_free_name_count(formula); ++i) {
        morandel_name name;
        morandel_formula_free_name(formula, i, &name);
        outcome.free_names.emplace_back(std::string(name.text, name.size), name.type);
    }
    return outcome;
}

ComputedValue by_formula(const std::string& formula, const std::vector<NamedValue>& values,
                         int flags, bool tells_types) {
    ComputedValue refusal;
    const OwnedFormula prepared = prepare(formula, values, flags, tells_types, refusal);
    return prepared == nullptr ? refusal : by_prepared(prepared.get(), values);
}

}  // namespace morandel::tests
