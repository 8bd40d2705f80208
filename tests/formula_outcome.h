// What computing a formula once gives, by the evaluator and by the prepared formula, to be
// compared.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <morandel/c.h>
#include <morandel/express.h>

namespace morandel::tests {

struct NamedValue {
    std::string name;
    bool is_text = false;
    double number = 0.0;
    std::string text;
};

struct ComputedValue {
    bool refused = false;
    bool succeeded = false;
    int error = -1;
    int type = 0;
    double number = 0.0;
    std::string text;
    std::vector<std::pair<std::string, int>> free_names;
    std::optional<morandel_position> position;  // of an error of the prepared formula
    bool as_numbers = true;  // whether it gives the same by the call for numbers alone
};

// Empty where both are the same.
std::string difference(const ComputedValue& evaluator, const ComputedValue& prepared,
                       std::size_t formula_size);

// Of a new evaluator.
ComputedValue by_evaluator(const std::string& formula, const std::vector<NamedValue>& values);

struct FreeFormula {
    void operator()(morandel_formula* formula) const { morandel_formula_free(formula); }
};
using OwnedFormula = std::unique_ptr<morandel_formula, FreeFormula>;

struct FreeResult {
    void operator()(morandel_result* result) const { morandel_result_free(result); }
};
using OwnedResult = std::unique_ptr<morandel_result, FreeResult>;

// Of a formula prepared with those names; where types are told, it is made ready for these values.
OwnedFormula prepare(const std::string& formula, const std::vector<NamedValue>& values, int flags,
                     bool tells_types, ComputedValue& refusal);
ComputedValue by_prepared(const morandel_formula* formula, const std::vector<NamedValue>& values);
ComputedValue by_formula(const std::string& formula, const std::vector<NamedValue>& values,
                         int flags, bool tells_types);

}  // namespace morandel::tests
