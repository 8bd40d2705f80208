// What the string functions take off of what is pending: fixed counts, whatever their calls gave,
// and after an error nothing.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/value.h"
#include "strfuncs/routines.h"

namespace {

using morandel::Error;

struct Call {
    const char* label;
    morandel::Routine routine;
    const char* text;  // the first argument
    double number;     // the same, of functions of numbers
    std::vector<std::string> texts;
    std::vector<double> values;  // numbers of the further arguments, by place; text_here for texts
    Error error;
    std::size_t texts_taken;
    std::size_t numbers_taken;
};

constexpr double text_here = 1e300;

const Call calls[] = {
    {"strsub", morandel::strsub, "abcdef", 0, {}, {2, 3}, Error::none, 0, 3},
    {"strsub from the end", morandel::strsub, "abcdef", 0, {}, {2, 3, 0}, Error::none, 0, 3},
    {"strsub at 0", morandel::strsub, "abcdef", 0, {}, {0, 3, 1}, Error::value_incorrect, 0, 0},
    {"strtrim", morandel::strtrim, "a", 0, {"aba"}, {text_here, 1}, Error::none, 1, 1},
    {"strtrims", morandel::strtrims, " a ", 0, {}, {}, Error::none, 0, 0},
    {"strsubn", morandel::strsubn, "a,b,c", 0, {","}, {text_here, 2}, Error::none, 1, 1},
    {"strsubn 0", morandel::strsubn, "a,b", 0, {","}, {text_here, 0}, Error::value_missing, 0, 0},
    {"left", morandel::left, "abc", 0, {}, {2}, Error::none, 0, 1},
    {"left 0", morandel::left, "abc", 0, {}, {0}, Error::not_positive, 0, 0},
    {"right", morandel::right, "abc", 0, {}, {2}, Error::none, 0, 1},
    {"strreplace",
     morandel::strreplace,
     "n",
     0,
     {"o", "foo"},
     {text_here, text_here, 1, 1},
     Error::none,
     2,
     2},
    {"strreplace from 0",
     morandel::strreplace,
     "n",
     0,
     {"o", "foo"},
     {text_here, text_here, 0, 1},
     Error::not_positive,
     0,
     0},
    {"strdelete", morandel::strdelete, "o", 0, {"foo"}, {}, Error::none, 1, 0},
    {"strinsert", morandel::strinsert, "ac", 0, {"b"}, {text_here, 1}, Error::none, 1, 1},
    {"strmismatch",
     morandel::strmismatch,
     "abc",
     0,
     {"abd"},
     {text_here, 1, 1, 0},
     Error::none,
     1,
     3},
    {"strmismatch beyond",
     morandel::strmismatch,
     "abc",
     0,
     {"abd"},
     {text_here, 9, 1, 0},
     Error::beyond_text,
     1,
     0},
    {"strfind", morandel::strfind, "b", 0, {"abc"}, {text_here, 1}, Error::none, 1, 1},
    {"strfind at 0", morandel::strfind, "b", 0, {"abc"}, {text_here, 0}, Error::not_positive, 0, 0},
    {"strfindn", morandel::strfindn, "b", 0, {"abc"}, {}, Error::none, 1, 1},
    {"r2s", morandel::r2s, "", 2.5, {}, {1}, Error::none, 0, 1},
    {"s2r", morandel::s2r, "2.5", 0, {}, {}, Error::none, 0, 0},
    {"if", morandel::choose, "", 1, {}, {2, 3}, Error::none, 0, 2},
};

TEST(StringFunctions, TakeOffFixedCounts) {
    for (const Call& row : calls) {
        morandel::ArgumentStack<morandel::PendingText> texts;
        morandel::ArgumentStack<double> numbers;
        // Of calls before.
        for (const char* pending : {"x", "y", "z"}) texts.push(std::string_view(pending));
        for (const double pending : {1.0, 1.0, 1.0}) numbers.push(pending);
        morandel::ExtraArguments extra;
        for (const std::string& text : row.texts) texts.push(text);
        for (std::size_t place = 0; place < row.values.size(); ++place) {
            if (row.values[place] == text_here) continue;
            extra.values[place] = row.values[place];
            numbers.push(row.values[place]);
        }
        const std::size_t texts_before = texts.size();
        const std::size_t numbers_before = numbers.size();

        morandel::Value value{row.number, row.text, morandel::type_text};
        const morandel::StringArgument string_argument;
        morandel::TextArena arena;
        morandel::Call call{value, extra, texts, numbers, string_argument, arena};
        EXPECT_EQ(row.routine(call), row.error) << row.label;
        EXPECT_EQ(texts_before - texts.size(), row.texts_taken) << row.label;
        EXPECT_EQ(numbers_before - numbers.size(), row.numbers_taken) << row.label;
    }
}

}  // namespace
