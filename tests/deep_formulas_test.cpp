// The deepest formulas, refused or not, through every call that reads one: each gets by with a
// small stack.

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include <morandel.h>
#include <morandel/formula.hpp>

#include "tests/formula_outcome.h"
#include "tests/small_stack.h"

namespace {

using morandel::tests::OwnedFormula;
using morandel::tests::OwnedResult;

constexpr std::size_t longest = 512;

// What is opened again and again, around something, and closed or not.
std::vector<std::string> make_formulas() {
    std::vector<std::string> formulas;
    for (const std::string open :
         {"(", "-(", "or(", "\"ln\"(", "1^(", "1+(", "1 <(", "1,(", "left(x,", "strcat(\"ab\",",
          "strsub(\"a\",", "if(", "mod(x,", "- ", "ln ", "x!,", "left(\"a\",2)+("}) {
        for (const std::string inside : {"1", "x", "y", "\"a\"", "1/0"}) {
            for (const bool closes : {false, true}) {
                std::string begin;
                std::string end;
                while (begin.size() + open.size() + inside.size() + end.size() < longest) {
                    begin += open;
                    if (closes) end += ')';
                }
                formulas.push_back(begin + inside + end);
            }
        }
    }
    return formulas;
}

void compute(const morandel_formula* formula) {
    const OwnedResult result(morandel_result_create());
    for (const morandel_value& value : {morandel_number(2.0), morandel_text("a", 1)}) {
        morandel_error* error = nullptr;
        (void)morandel_formula_compute(formula, &value, 1, result.get(), &error);
        morandel_error_free(error);
    }
}

void compute_columns(const morandel_formula* formula) {
    const double numbers[] = {2.0, std::numeric_limits<double>::infinity()};
    const morandel_column column{MORANDEL_NUMBER, numbers, sizeof(double), nullptr, nullptr, 0, 0};
    double results[2];
    (void)morandel_formula_columns(formula, &column, 1, 2, results, nullptr, nullptr);
    morandel_texts* texts = nullptr;
    (void)morandel_formula_text_columns(formula, &column, 1, 2, &texts, nullptr, nullptr);
    morandel_texts_free(texts);
    for (const int wants : {MORANDEL_NUMBER, MORANDEL_TEXT}) {
        morandel_error* error = nullptr;
        (void)morandel_formula_row_error(formula, &column, 1, 2, 0, wants, &error);
        morandel_error_free(error);
    }
}

void study(const morandel_formula* formula) {
    morandel_warnings* warnings = nullptr;
    EXPECT_EQ(morandel_formula_warnings(formula, &warnings, nullptr), 1);
    morandel_warnings_free(warnings);
    morandel_faults* faults = nullptr;
    EXPECT_EQ(morandel_formula_check(formula, &faults, nullptr), 1);
    morandel_faults_free(faults);
}

void compute_in_list(const std::string& text) {
    CVariableExpressList list;
    list.Append(CVariableExpress::given, "x", 2.0, "");
    list.Append(CVariableExpress::computed, "z", 0.0, text.c_str());
    (void)list.Cal();
}

TEST(DeepFormulas, NeedASmallStackWhateverIsDoneWithThem) {
    static const std::vector<std::string> formulas = make_formulas();
    static std::size_t prepared = 0;
    const auto run = [](void*) -> void* {
        for (const std::string& text : formulas) {
            const morandel_name name{"x", 1, MORANDEL_DEDUCED};
            morandel_formula* made = nullptr;
            morandel_error* error = nullptr;
            prepared += static_cast<std::size_t>(morandel_formula_prepare(
                text.data(), text.size(), &name, 1, MORANDEL_ALLOW_FREE_NAMES, &made, &error));
            morandel_error_free(error);
            const OwnedFormula formula(made);
            if (formula != nullptr) {
                compute(formula.get());
                compute_columns(formula.get());
                study(formula.get());
            }
            compute_in_list(text);
        }
        return nullptr;
    };
    morandel::tests::run_on_small_stack(run);
    EXPECT_GT(prepared, formulas.size() / 3);
    EXPECT_LT(prepared, formulas.size());
}

}  // namespace
