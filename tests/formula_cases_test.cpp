// Prepared formulas give what a new evaluator gives, to the last bit: for every case file and for
// random formulas; and columns what their rows give.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/case_replay.h"
#include "tests/formula_outcome.h"
#include "tests/random_formulas.h"

namespace {

using morandel::cases::Block;
using morandel::cases::Line;
using morandel::tests::by_evaluator;
using morandel::tests::by_formula;
using morandel::tests::by_prepared;
using morandel::tests::ComputedValue;
using morandel::tests::difference;
using morandel::tests::NamedValue;
using morandel::tests::OwnedFormula;
using morandel::tests::RandomFormulas;
using morandel::tests::setting;

constexpr int as_bytes = MORANDEL_CODE_PAGE_936 | MORANDEL_ALLOW_FREE_NAMES;
constexpr std::size_t most_names = 50;

// A line as the file wants it, where the evaluator itself has been looked at elsewhere.
std::string problem_of(const Line& line, const std::vector<NamedValue>& values) {
    const auto& wanted = line.expectation;
    const ComputedValue evaluator = by_evaluator(line.formula, values);
    std::string problem;
    for (const bool tells_types : {false, true}) {
        const ComputedValue found = by_formula(line.formula, values, as_bytes, tells_types);
        problem += difference(evaluator, found, line.formula.size());
        if (found.refused != wanted.refused) problem += "refused otherwise; ";
        if (wanted.error && found.error != *wanted.error) problem += "another error; ";
        const bool is_text = found.type == MORANDEL_TEXT;
        if (wanted.text && is_text && found.text != *wanted.text) problem += "another text; ";
        if (wanted.type && found.type != *wanted.type) problem += "another type; ";
        if (wanted.number &&
            !morandel::cases::same_number(found.number, *wanted.number, wanted.inexact)) {
            problem += "another number; ";
        }
        if (wanted.variables && found.free_names != *wanted.variables) problem += "other names; ";
    }
    return problem;
}

TEST(FormulaCases, GiveWhatTheFilesSay) {
    std::size_t lines = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(MORANDEL_SOURCE_FOLDER "/tests/cases")) {
        if (entry.path().extension() != ".cases") continue;
        for (const Block& block : morandel::cases::read_case_file(entry.path())) {
            if (block.is_sequence || block.is_list) continue;  // about what is left for others
            std::vector<NamedValue> values;
            for (const Line& line : block.lines) {
                if (line.let) {
                    const auto& let = *line.let;
                    values.push_back({let.name, let.is_text, let.number, let.text});
                } else if (line.verb.empty() && values.size() <= most_names &&
                           line.formula.find('\0') == std::string::npos) {
                    ++lines;
                    EXPECT_EQ(problem_of(line, values), "")
                        << entry.path() << ':' << line.number << ' ' << line.formula;
                }
            }
        }
    }
    EXPECT_GT(lines, 500U);
}

void set_random(NamedValue& value, RandomFormulas& random) {
    value.text = value.is_text ? random.text() : "";
    value.number = value.is_text ? 0.0 : random.number();
}

std::vector<NamedValue> random_values(RandomFormulas& random, std::size_t count) {
    std::vector<NamedValue> values(count);
    for (NamedValue& value : values) {
        value.name = random.name();
        value.is_text = random.below(2) == 0;
        set_random(value, random);
    }
    return values;
}

TEST(FormulaCases, RandomFormulasGiveWhatANewEvaluatorGives) {
    RandomFormulas random(static_cast<std::uint32_t>(setting("MORANDEL_RANDOM_SEED", 1)));
    const std::uint64_t count = setting("MORANDEL_RANDOM_PREPARED", 20'000);
    std::uint64_t succeeded = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::string formula = random.formula();
        std::vector<NamedValue> values = random_values(random, random.below(7));
        ComputedValue found;
        const OwnedFormula prepared = prepare(formula, values, as_bytes, i % 2 == 0, found);
        for (int round = 0; round < 2; ++round) {
            if (prepared != nullptr) found = by_prepared(prepared.get(), values);
            const ComputedValue evaluator = by_evaluator(formula, values);
            succeeded += evaluator.succeeded ? 1 : 0;
            ASSERT_EQ(difference(evaluator, found, formula.size()), "") << formula;
            // The same names with other values, of other types too.
            for (NamedValue& value : values) {
                value.is_text = random.below(3) == 0;
                set_random(value, random);
            }
        }
    }
    EXPECT_GT(succeeded, count / 5);
}

// Rows of values, column by column in two layouts.
struct Table {
    std::vector<std::vector<NamedValue>> rows;
    std::vector<std::vector<double>> numbers;
    std::vector<std::string> bytes;
    std::vector<std::vector<int>> offsets;
    std::vector<morandel_column> columns;

    Table(RandomFormulas& random, std::size_t names, std::size_t count)
        : numbers(names), bytes(names), offsets(names), columns(names) {
        const std::vector<NamedValue> heads = random_values(random, names);
        std::vector<bool> is_single(names);
        for (std::size_t i = 0; i < names; ++i) is_single[i] = random.below(4) == 0;
        for (std::size_t row = 0; row < count; ++row) {
            rows.push_back(heads);
            for (std::size_t i = 0; i < names; ++i) {
                NamedValue& value = rows.back()[i];
                if (is_single[i] && row > 0) {
                    value = rows[0][i];
                } else if (value.is_text) {
                    value.text = random.text();
                } else {
                    value.number = random.number();
                }
                offsets[i].push_back(static_cast<int>(bytes[i].size()));
                numbers[i].push_back(value.number);
                numbers[i].push_back(-1.0);  // between two rows
                bytes[i] += value.text;
            }
        }
        for (std::size_t i = 0; i < names; ++i) {
            offsets[i].push_back(static_cast<int>(bytes[i].size()));
            morandel_column& column = columns[i];
            column.type = heads[i].is_text ? MORANDEL_TEXT : MORANDEL_NUMBER;
            column.numbers = numbers[i].data();
            column.stride = is_single[i] ? 0 : 2 * sizeof(double);
            column.text = bytes[i].data();
            column.size = is_single[i] ? rows[0][i].text.size() : bytes[i].size();
            column.offsets = is_single[i] ? nullptr : offsets[i].data();
            column.offset_size = sizeof(int);
        }
    }
};

TEST(FormulaCases, ColumnsGiveWhatTheirRowsGive) {
    RandomFormulas random(static_cast<std::uint32_t>(setting("MORANDEL_RANDOM_SEED", 1)));
    const std::uint64_t count = setting("MORANDEL_RANDOM_PREPARED", 20'000) / 10;
    std::uint64_t succeeded = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        constexpr std::size_t rows = 7;
        const Table table(random, random.below(5), rows);
        const std::string formula = random.formula();
        ComputedValue refusal;
        const OwnedFormula prepared = prepare(formula, table.rows[0], as_bytes, true, refusal);
        if (prepared == nullptr) continue;
        std::vector<double> results(rows, 99.0);
        std::vector<unsigned char> status(rows, 99);
        ASSERT_EQ(
            morandel_formula_columns(prepared.get(), table.columns.data(), table.columns.size(),
                                     rows, results.data(), status.data(), nullptr),
            1);
        std::vector<unsigned char> text_status(rows, 99);
        morandel_texts* texts = nullptr;
        ASSERT_EQ(morandel_formula_text_columns(prepared.get(), table.columns.data(),
                                                table.columns.size(), rows, &texts,
                                                text_status.data(), nullptr),
                  1);
        for (std::size_t row = 0; row < rows; ++row) {
            const ComputedValue one = by_prepared(prepared.get(), table.rows[row]);
            const bool is_text = one.type == MORANDEL_TEXT;
            const int wrong = MORANDEL_ROW_OTHER_TYPE;
            const int number_status = one.succeeded ? is_text ? wrong : 0 : MORANDEL_ROW_FAILED;
            const int wanted_status = one.succeeded ? is_text ? 0 : wrong : MORANDEL_ROW_FAILED;
            ASSERT_EQ(status[row], number_status) << formula;
            ASSERT_EQ(text_status[row], wanted_status) << formula;
            const double number = number_status == 0 ? one.number : 0.0;
            ASSERT_TRUE(morandel::cases::same_number(results[row], number, false)) << formula;
            const std::size_t* offsets = morandel_texts_offsets(texts);
            const std::string text(morandel_texts_bytes(texts, nullptr) + offsets[row],
                                   offsets[row + 1] - offsets[row]);
            ASSERT_EQ(text, wanted_status == 0 ? one.text : "") << formula;
            morandel_error* error = nullptr;
            ASSERT_EQ(morandel_formula_row_error(prepared.get(), table.columns.data(),
                                                 table.columns.size(), rows, row, MORANDEL_NUMBER,
                                                 &error),
                      number_status == 0 ? 0 : 1);
            EXPECT_EQ(morandel_error_number(error), one.error) << formula;
            morandel_error_free(error);
            succeeded += number_status == 0 || wanted_status == 0 ? 1 : 0;
        }
        morandel_texts_free(texts);
    }
    EXPECT_GT(succeeded, count);
}

}  // namespace
