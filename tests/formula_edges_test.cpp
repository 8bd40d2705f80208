// What callers may do with pointers, sizes, names and rows of prepared formulas, and rarely do.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <morandel.h>
#include <morandel/formula.hpp>

#include "tests/formula_outcome.h"

namespace {

using morandel::Column;
using morandel::Error;
using morandel::Formula;
using morandel::Kind;
using morandel::Name;
using morandel::tests::OwnedResult;

// The reasons of its warnings.
std::vector<int> reasons(const Formula& formula) {
    std::vector<int> all;
    for (const morandel::Notice& notice : formula.warnings()) all.push_back(notice.reason());
    return all;
}

// Many functions leave the text of their operand where it is.
TEST(FormulaEdges, ANumberHasNoText) {
    const std::vector<std::string> texts{"中文"};
    for (const char* text : {"strlen(strsub(t,1,3))", "s2r(strsub(t,1,1))", "strsub(t,1,1)+1",
                             "int(strsub(t,1,3))", "strfind(\"x\",strsub(t,1,1))"}) {
        const Formula formula(text, {{"t", Kind::text}});
        std::vector<double> numbers;
        const auto status = formula.columns({texts}, numbers);
        ASSERT_EQ(status.front(), MORANDEL_ROW_OK) << text;
        EXPECT_EQ(formula(texts.front()).number(), numbers.front()) << text;
    }
    const OwnedResult result(morandel_result_create());
    const char* text = "\"abc\"+1";
    ASSERT_EQ(
        morandel_evaluate(text, MORANDEL_TERMINATED, nullptr, nullptr, 0, result.get(), nullptr),
        1);
    std::size_t size = 99;
    EXPECT_STREQ(morandel_result_text(result.get(), &size), "");
    EXPECT_EQ(size, 0U);
}

// Though what is computed has no need of them.
TEST(FormulaEdges, FreeNamesFailInEveryCall) {
    for (const char* text : {"a+1,b", "1,b", "2*a,b", "a,b"}) {
        const Formula formula(text, {{"a", Kind::number}});
        const double value = 5.0;
        double number = 0.0;
        EXPECT_EQ(morandel_formula_compute_numbers(formula.handle(), &value, 1, &number), 0);
        EXPECT_THROW((void)formula(value), Error) << text;
        const Formula allowing(text, {{"a", Kind::number}}, MORANDEL_ALLOW_FREE_NAMES);
        EXPECT_EQ(morandel_formula_compute_numbers(allowing.handle(), &value, 1, &number), 1);
        EXPECT_EQ(number, allowing(value).number()) << text;
    }
}

TEST(FormulaEdges, ANumberMayBeOverwrittenByTheResult) {
    const struct {
        const char* text;
        double a;
        int succeeds;
        double wanted;
    } cases[] = {{"a+b", 3.0, 1, 7.0},
                 {"preci(a,1)+b", 3.0, 1, 7.0},
                 {"a!+b", 3.0, 1, 10.0},
                 {"a+b", 1e-9, 1, 4.000000001},
                 {"a!+b", 1e-9, 0, 0.0}};
    for (const auto& [text, a, succeeds, wanted] : cases) {
        const Formula formula(text, {"a", "b"});
        for (const std::size_t place : {0U, 1U}) {
            double values[] = {a, 4.0};
            EXPECT_EQ(morandel_formula_compute_numbers(formula.handle(), values, 2, &values[place]),
                      succeeds)
                << text;
            EXPECT_EQ(values[place], wanted) << text << place;
        }
    }
}

// As a value, and as a formula, of the use that takes its place; short texts and long ones.
TEST(FormulaEdges, ATextOfAResultMayBeAValueOfItsNextUse) {
    const OwnedResult result(morandel_result_create());
    const auto text = [&] {
        std::size_t size = 0;
        const char* bytes = morandel_result_text(result.get(), &size);
        return morandel_text(bytes, size);
    };
    const Formula f("strcat(s, \"果x\", s)", {{"s", Kind::text}});
    std::string wanted = "苹";
    morandel_value value = morandel_text(wanted.data(), wanted.size());
    for (int i = 0; i < 8; ++i) {
        ASSERT_EQ(morandel_formula_compute(f.handle(), &value, 1, result.get(), nullptr), 1);
        wanted += "果x" + wanted;
        value = text();
        EXPECT_EQ(std::string(value.text, value.size), wanted);
    }
    const auto compute = [&](const std::string& formula) {
        const int succeeded = morandel_evaluate(formula.data(), formula.size(), nullptr, nullptr, 0,
                                                result.get(), nullptr);
        return succeeded == 1 ? text() : morandel_value{};
    };
    const morandel_value formula = compute("strcat(\"str\", \"len(r2s(1234))\")");
    ASSERT_EQ(
        morandel_evaluate(formula.text, formula.size, nullptr, nullptr, 0, result.get(), nullptr),
        1);
    EXPECT_EQ(morandel_result_number(result.get()), 4.0);
}

// In the place of a column or partly, of the offsets of texts or of a value for all rows; also
// where a row among them has to be computed again.
TEST(FormulaEdges, ColumnsMayBeOverwrittenByResults) {
    constexpr std::size_t rows = 1000;
    std::vector<double> numbers(2 * rows + 1);
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<double>(i) / 4.0;
    numbers[5] = 1e-30;
    numbers[700] = HUGE_VAL;
    const Formula f("a*2+b+strlen(\"\")", {"a", "b"});
    const Formula of_numbers("a*2+b", {"a", "b"});
    for (const Formula& formula : {f, of_numbers}) {
        const auto compute = [&](const Column& a, const Column& b, double* results) {
            const auto status = formula.columns({a, b}, rows, results);
            std::vector<double> all(results, results + rows);
            all.insert(all.end(), status.begin(), status.end());
            return all;
        };
        std::vector<double> apart(rows);
        const Column column(numbers.data() + 1, rows);
        const auto wanted = compute(column, 0.25, apart.data());
        for (const std::size_t place : {std::size_t{0}, std::size_t{1}, std::size_t{2}, rows}) {
            std::vector<double> changing = numbers;
            const Column values(changing.data() + 1, rows);
            EXPECT_EQ(compute(values, 0.25, changing.data() + place), wanted) << place;
        }
        // From the last to the first, and one value that lies among the results.
        const std::size_t back = std::size_t{0} - sizeof(double);
        const Column backwards(numbers.data() + rows, rows, back);
        const auto wanted_backwards = compute(backwards, 0.25, apart.data());
        std::vector<double> changing = numbers;
        const Column values(changing.data() + rows, rows, back);
        EXPECT_EQ(compute(values, 0.25, changing.data() + 1), wanted_backwards);
        apart[1] = 0.25;
        EXPECT_EQ(compute(column, Column(apart.data() + 1, rows, 0), apart.data()), wanted);
    }
}

TEST(FormulaEdges, ANumberOfOneRowMayBeOverwrittenByItsResult) {
    const Formula formula("a*2+b", {"a", "b"});
    double value = 1e-30;
    EXPECT_EQ(formula.columns({Column(&value, 1), 0.25}, 1, &value), std::vector<unsigned char>{0});
    EXPECT_EQ(value, 0.25);
}

TEST(FormulaEdges, TextsAndTheirOffsetsMayBeOverwrittenByResults) {
    constexpr std::size_t rows = 40;
    constexpr std::size_t width = sizeof(double);
    const Formula number("s2r(s)", {{"s", Kind::text}});
    std::string bytes;
    std::vector<std::uint64_t> offsets{0};
    std::vector<double> wanted;
    for (std::size_t i = 0; i < rows; ++i) {
        bytes += std::to_string(10000000 + i);
        offsets.push_back(bytes.size());
        wanted.push_back(static_cast<double>(10000000 + i));
    }
    std::vector<double> room(2 * rows + 1);
    const auto compute = [&](const void* text, const void* its_offsets, std::size_t place) {
        const morandel_column column{
            MORANDEL_TEXT, nullptr, 0,           static_cast<const char*>(text),
            its_offsets,   width,   bytes.size()};
        double* const results = room.data() + place;
        EXPECT_EQ(
            morandel_formula_columns(number.handle(), &column, 1, rows, results, nullptr, nullptr),
            1);
        return std::vector<double>(results, results + rows);
    };
    for (const std::size_t place : {std::size_t{1}, rows - 1, rows}) {
        std::memcpy(room.data(), offsets.data(), width * offsets.size());
        EXPECT_EQ(compute(bytes.data(), room.data(), place), wanted) << place;
    }
    for (const std::size_t place : {std::size_t{1}, rows - 1}) {
        std::memcpy(room.data(), bytes.data(), bytes.size());
        EXPECT_EQ(compute(room.data(), offsets.data(), place), wanted) << place;
    }
}

// A text that a NUL ends is as long as that.
TEST(FormulaEdges, ATextForAllRowsMayBeOverwrittenByResults) {
    const Formula number("s2r(t)", {{"t", Kind::text}});
    for (const std::size_t size : {std::size_t{1}, MORANDEL_TERMINATED}) {
        std::array<double, 4> room{};
        std::memcpy(room.data(), "7", 2);
        const morandel_column column{
            MORANDEL_TEXT, nullptr, 0,   reinterpret_cast<const char*>(room.data()),
            nullptr,       0,       size};
        EXPECT_EQ(morandel_formula_columns(number.handle(), &column, 1, room.size(), room.data(),
                                           nullptr, nullptr),
                  1);
        EXPECT_EQ(room, (std::array<double, 4>{7.0, 7.0, 7.0, 7.0}));
    }
}

TEST(FormulaEdges, TextsWithOffsetsHaveASize) {
    const Formula length("strlen(t)", {{"t", Kind::text}});
    const std::int32_t offsets[] = {0, 1};
    double result = 0.0;
    for (const std::size_t size : {std::size_t{1}, MORANDEL_TERMINATED}) {
        const morandel_column column{MORANDEL_TEXT,        nullptr, 0, "a", offsets,
                                     sizeof(std::int32_t), size};
        EXPECT_EQ(
            morandel_formula_columns(length.handle(), &column, 1, 1, &result, nullptr, nullptr),
            size == 1 ? 1 : 0);
    }
}

// Of no rows nothing is looked at.
TEST(FormulaEdges, NoRowsNeedNoOffsets) {
    const Formula copy("strcat(t,t)", {{"t", Kind::text}});
    morandel_texts* texts = nullptr;
    const char offset = 1;
    const morandel_column column{MORANDEL_TEXT, nullptr, 0, "a", &offset, 0, 1};
    EXPECT_EQ(morandel_formula_text_columns(copy.handle(), &column, 1, 0, &texts, nullptr, nullptr),
              1);
    EXPECT_EQ(morandel_texts_offsets(texts)[0], 0U);
    morandel_texts_free(texts);
}

// What the first rows take is no reason to fail.
TEST(FormulaEdges, LongTextsMayComeFirst) {
    constexpr std::size_t rows = 1'000'000;
    std::vector<std::uint64_t> offsets;
    const std::string bytes(std::size_t{40} * 300'000, 'x');
    for (std::size_t row = 0; row <= rows; ++row) {
        offsets.push_back(std::min<std::size_t>(row, 40) * 300'000);
    }
    std::vector<unsigned char> status(rows);
    morandel_texts* texts = nullptr;
    const Formula copy("strcat(t,t)", {{"t", Kind::text}});
    const morandel_column column{MORANDEL_TEXT,  nullptr, 0,           bytes.data(),
                                 offsets.data(), 8,       bytes.size()};
    ASSERT_EQ(morandel_formula_text_columns(copy.handle(), &column, 1, rows, &texts, status.data(),
                                            nullptr),
              1);
    EXPECT_EQ(morandel_texts_offsets(texts)[rows], 2 * bytes.size());
    morandel_texts_free(texts);
}

// As a computation of one row does.
TEST(FormulaEdges, TheFirstOfTwoBrokenTextsIsToldOf) {
    const Formula f("strcat(a,b)", {{"a", Kind::text}, {"b", Kind::text}});
    const std::string a = "\xff";
    const std::string b = "x\xff";
    const auto place = [](const Error& error) {
        return std::pair(error.value(), error.position()->byte);
    };
    try {
        (void)f(a, b);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(place(error), std::pair(0, std::size_t{0}));
    }
    const std::vector<std::string> as{a, "good"};
    const std::vector<std::string> bs{b, b};
    using View = std::string_view;
    EXPECT_EQ(place(*f.row_error({View(a), View(b)}, 0)), std::pair(0, std::size_t{0}));
    EXPECT_EQ(place(*f.row_error({as, View(b)}, 0)), std::pair(0, std::size_t{0}));
    EXPECT_EQ(place(*f.row_error({as, View(b)}, 1)), std::pair(1, std::size_t{1}));
    EXPECT_EQ(place(*f.row_error({View(a), bs}, 1)), std::pair(0, std::size_t{0}));
    std::vector<double> numbers;
    for (const unsigned char status : f.columns({View("good"), bs}, numbers)) {
        EXPECT_EQ(status, MORANDEL_ROW_NO_TEXT);
    }
}

TEST(FormulaEdges, ANameThatStandsTwiceIsTheFirst) {
    const Formula f("strlen(a)", {{"a", Kind::text}, {"a", Kind::number}});
    EXPECT_EQ(reasons(f), std::vector<int>{});
    EXPECT_EQ(f("abc", 1.0).number(), 3.0);
    EXPECT_EQ(reasons(Formula("strlen(a)", {{"a", Kind::number}, {"a", Kind::text}})),
              std::vector<int>{MORANDEL_REASON_WRONG_KIND});
    EXPECT_EQ(Formula("a+1", {"a", "a"}).compute({{"a", 1.0}}).number(), 2.0);
    EXPECT_THROW((void)Formula("a+b", {"a", "b"}).compute({{"a", 1.0}}), std::invalid_argument);
}

TEST(FormulaEdges, OneValueForAllRowsMayBeOfAnyType) {
    const Formula f("strlen(s)+n+m", {"s", "n", "m"});
    const std::string text = "abc";
    std::vector<double> results(2);
    (void)f.columns({text, 0, 2.5F}, 2, results.data());
    EXPECT_EQ(results, (std::vector<double>{5.5, 5.5}));
    (void)f.columns({"ab", Column(1U), true}, 2, results.data());
    EXPECT_EQ(results, (std::vector<double>{4.0, 4.0}));
}

TEST(FormulaEdges, ThereAreNeverAsManyRowsAsBytes) {
    const Formula f("strcat(a,\"b\")", {{"a", Kind::text}});
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    const morandel_column column = Column("x").column();
    for (const std::size_t rows : {most, most - 1}) {
        morandel_texts* texts = nullptr;
        morandel_error* error = nullptr;
        EXPECT_EQ(
            morandel_formula_text_columns(f.handle(), &column, 1, rows, &texts, nullptr, &error),
            0);
        EXPECT_EQ(morandel_error_reason(error), MORANDEL_REASON_NO_MEMORY);
        morandel_error_free(error);
    }
    EXPECT_THROW((void)f.row_error({"x"}, most), std::invalid_argument);
}

// Fifty names may have values; what a formula does not use need have none.
TEST(FormulaEdges, WarnsOfAFormulaWithManyGivenNames) {
    std::vector<Name> fifty;
    for (int i = 0; i < 50; ++i) fifty.emplace_back("n" + std::to_string(i));
    const std::vector<int> both{MORANDEL_REASON_CANNOT_SUFFICE, MORANDEL_REASON_NOT_READ};
    EXPECT_EQ(reasons(Formula("left(\"abcd\",2)+b ;2", fifty, MORANDEL_ALLOW_FREE_NAMES)), both);
    EXPECT_EQ(reasons(Formula("left(\"abcd\",2)+n49 ;2", fifty)), both);

    std::string sum = "left(\"abcd\",2)";
    for (const Name& name : fifty) sum += "+" + name.text;
    EXPECT_EQ(reasons(Formula(sum + " ;2", std::vector<Name>{}, MORANDEL_ALLOW_FREE_NAMES)), both);
}

TEST(FormulaEdges, WarnsOfFreeNamesByTheTypeOfTheirPlace) {
    EXPECT_EQ(reasons(Formula("left(strcat(\"a\",t),2)", {{"t", Kind::text}})),
              std::vector<int>{MORANDEL_REASON_CANNOT_SUFFICE});
    EXPECT_EQ(
        reasons(Formula("left(strcat(\"a\",t),2)", std::vector<Name>{}, MORANDEL_ALLOW_FREE_NAMES)),
        std::vector<int>{MORANDEL_REASON_CANNOT_SUFFICE});
}

// A host's static object, made before anything of the library. Where what it computes when it goes
// is not as ever, the program fails.
struct LastToGo {
    ~LastToGo() {
        if (formula.has_value() && !is_as_ever()) std::_Exit(1);
    }
    [[nodiscard]] bool is_as_ever() const {
        std::size_t size = 0;
        const char* chinese = morandel_message(33, &size);
        CExpress express;
        return (*formula)("苹果").text() == "苹果x" && std::string(chinese, size) == "缺少')'" &&
               express.SetExpression("mod(7, 4)") == 1 && express.CalcExpression() == 1 &&
               express.GetResult() == 3.0;
    }
    std::optional<Formula> formula;
};
LastToGo last_to_go;

TEST(FormulaEdges, StaticObjectsOfAHostMayComputeWhenTheyGo) {
    last_to_go.formula.emplace("strcat(s, \"x\")");
    EXPECT_TRUE(last_to_go.is_as_ever());
}

TEST(FormulaEdges, TypesAreDeducedBesideALongName) {
    const std::string longest(251, 'n');
    const Formula f("strlen(t)+" + longest, {longest, "t"});
    EXPECT_EQ(f.names()[1].kind, Kind::text);
    EXPECT_EQ(f.names()[0].kind, Kind::number);
    EXPECT_EQ(f(2.0, "abc").number(), 5.0);
    const std::string shorter(250, 'n');
    EXPECT_EQ(Formula("strlen(" + shorter + ")", {shorter}).names()[0].kind, Kind::text);
}

// Of as many rows as were computed, whatever the columns have.
TEST(FormulaEdges, TellsWhyAnyRowFails) {
    const Formula f("a/b", {"a", "b"});
    EXPECT_EQ(f.row_error({1.0, 0.0}, 3)->number(), 3);
    EXPECT_FALSE(f.row_error({1.0, 2.0}, 3));
    const std::vector<double> three{1.0, 2.0, 3.0};
    const std::vector<double> two{1.0, 0.0};
    EXPECT_EQ(f.row_error({three, two}, 1)->number(), 3);
    EXPECT_FALSE(f.row_error({three, two}, 0));
    EXPECT_THROW((void)f.row_error({three, two}, 2), std::invalid_argument);
}

TEST(FormulaEdges, ValuesMayLieInTheResults) {
    const Formula f("a+b", {"a", "b"});
    const std::vector<double> a(1000, 1.0);
    std::vector<double> results{5.0};
    (void)f.columns({a, Column(results.data(), 1000, 0)}, results);
    EXPECT_EQ(results, std::vector<double>(1000, 6.0));
    (void)f.columns({results, 1.0}, results);
    EXPECT_EQ(results, std::vector<double>(1000, 7.0));
}

// One that lies next to 2 is not 2.
TEST(FormulaEdges, ExponentsAreLookedAtToTheLastBit) {
    const Formula power("a^b", {"a", "b"});
    const std::vector<double> a(4, 1e9);
    const std::vector<double> b(4, std::nextafter(2.0, 3.0));
    std::vector<double> results;
    (void)power.columns({a, b}, results);
    EXPECT_EQ(results, std::vector<double>(4, power(a[0], b[0]).number()));
    EXPECT_NE(results[0], 1e18);
}

TEST(FormulaEdges, NullIsRefused) {
    const Formula f("a+b", {"a", "b"});
    EXPECT_THROW((void)f.compute_numbers(nullptr, 2), Error);
    EXPECT_EQ(Formula("1+1").compute_numbers(nullptr, 0), 2.0);
    const double* const nothing = nullptr;
    std::vector<double> results;
    EXPECT_THROW((void)f.columns({Column(nothing, 1000), 1.0}, results), Error);
}

}  // namespace
