// The face of prepared formulas: values, names, errors with their positions, warnings, columns.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <morandel/express.h>
#include <morandel/formula.hpp>

namespace {

using morandel::Column;
using morandel::Error;
using morandel::evaluate;
using morandel::Formula;
using morandel::Kind;
using morandel::Name;
using morandel::Notice;

// "number/reason @byte/character+bytes/characters"
std::string words(const Notice& notice) {
    std::string text = std::to_string(notice.number()) + '/' + std::to_string(notice.reason());
    if (const auto& at = notice.position()) {
        text += " @" + std::to_string(at->byte) + '/' + std::to_string(at->character) + '+' +
                std::to_string(at->bytes) + '/' + std::to_string(at->characters);
    }
    return text;
}

template <class Work>
std::string failure(const Work& work) {
    try {
        work();
    } catch (const Error& error) {
        return words(error.notice());
    }
    return "none";
}

std::string failure_of(const std::string& formula) {
    return failure([&] {
        const Formula f(formula);
        f();
    });
}

std::string warnings_of(const std::string& formula, const std::vector<Name>& names = {}) {
    std::string text;
    for (const Notice& notice : Formula(formula, names).warnings()) {
        text += (text.empty() ? "" : ", ") + words(notice);
    }
    return text;
}

TEST(Formula, EvaluatesAtOnce) {
    EXPECT_EQ(evaluate("preci(price * qty, 2)", {{"price", 2.675}, {"qty", 3.0}}).number(), 8.03);
    EXPECT_EQ(evaluate("1+2").number(), 3.0);
    EXPECT_EQ(evaluate("strcat(a, b)", {{"a", "苹"}, {"b", std::string("果")}}).text(), "苹果");
    EXPECT_EQ(evaluate("int(3.7)").kind(), Kind::integer);
    EXPECT_EQ(evaluate("3.7").kind(), Kind::number);
}

TEST(Formula, ComputesByPlaceAndByName) {
    const Formula f("strcat(name, \"·\", r2s(price, 2))", {"name", "price"});
    EXPECT_EQ(f("苹果", 12.5).text(), "苹果·12.5");
    EXPECT_EQ(f.compute({{"price", 1}, {"name", "梨"}, {"unknown", 3}}).text(), "梨·1");
    EXPECT_THROW((void)f.compute({{"price", 1}}), std::invalid_argument);
    EXPECT_THROW((void)f("a", 1).number(), std::logic_error);
    EXPECT_THROW((void)Formula("1")().text(), std::logic_error);
}

TEST(Formula, InsideAreBytesOfTheCodePage) {
    EXPECT_EQ(evaluate("strlen(\"苹果\")").number(), 4.0);
    EXPECT_EQ(evaluate("strsub(s, 3, 2)", {{"s", "苹果"}}).text(), "果");
    EXPECT_EQ(evaluate("单价*2", {{"单价", 4}}).number(), 8.0);
}

// However far from the beginning they stand, and in one byte where that is their code.
TEST(Formula, CharactersAreFoundAnywhere) {
    const Formula size("strlen(s)", {{"s", Kind::text}});
    for (std::size_t before = 0; before < 80; ++before) {
        for (const char* last :
             {"", "b", "0123456789", "0123456789012345678901234567890123456789"}) {
            const std::string text = std::string(before, 'a') + "苹€" + last;
            const double wanted = static_cast<double>(text.size()) - 3.0;
            EXPECT_EQ(size(text).number(), wanted) << before << last;
            EXPECT_EQ(Formula("s", {{"s", Kind::text}})(text).text(), text) << before << last;
        }
    }
}

TEST(Formula, NumbersAreSeenWith20Decimals) {
    const Formula f("x*1", {"x"});
    for (const double number : {1e-21, 0.1, -1e-5, 1e300, 0.0}) {
        CExpress e;
        MYPARA x{"x", number, ""};
        e.SetNumberOfPara(1);
        e.SetPara(&x, 1, false);
        e.SetExpression("x*1");
        e.CalcExpression();
        EXPECT_EQ(f(number).number(), e.GetResult());
        EXPECT_EQ(f.compute_numbers(&number, 1), e.GetResult());
    }
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(failure([&] { f(infinity); }), "42/0 @1/1+1/1");
    EXPECT_TRUE(std::isnan(f(std::nan("")).number()));
}

TEST(Formula, NothingPends) {
    const Formula leaves("strcase(\"x\", 5)");
    const Formula takes("if(1, 7)");
    (void)leaves();
    const std::string alone = failure([&] { takes(); });
    (void)leaves();
    EXPECT_EQ(failure([&] { takes(); }), alone);
}

TEST(Formula, LeavesAloneWhatPendsForEvaluators) {
    const auto left = [](bool prepares) {
        CExpress e;
        e.SetExpression("sin(1, 2, 3)");
        e.CalcExpression();
        if (prepares) {
            const Formula f("left(\"abcd\", 2)+sin(1, 2)");
            (void)f.warnings();
            (void)f.check();
            EXPECT_NE(failure([&] { f(); }), "none");
        }
        e.SetExpression("left(\"abcd\", 2)");
        return std::to_string(e.CalcExpression()) + e.m_StrResult;
    };
    EXPECT_EQ(left(true), left(false));
    EXPECT_EQ(left(true), "1ab");
}

TEST(Formula, ItsNamesAreAllThatItUses) {
    const Formula f("strsub(s, n, 2) like t");
    const std::vector<Name> names = f.names();
    ASSERT_EQ(names.size(), 3U);
    EXPECT_EQ(names[0].text, "s");
    EXPECT_EQ(names[0].kind, Kind::text);
    EXPECT_EQ(names[1].text, "n");
    EXPECT_EQ(names[1].kind, Kind::number);
    EXPECT_EQ(names[2].kind, Kind::text);
    EXPECT_TRUE(f.free_names().empty());
    EXPECT_EQ(f("abcd", 2, "bc").number(), 1.0);
    EXPECT_EQ(Formula("strlen(s)", {"s"}).names()[0].kind, Kind::text);
    EXPECT_EQ(Formula("strlen(s)", {{"s", Kind::number}}).names()[0].kind, Kind::number);
    EXPECT_EQ(Formula("1", {"s"}).names()[0].kind, Kind::number) << "nothing says what it is";
}

TEST(Formula, HasAtMostFiftyNames) {
    std::vector<Name> names;
    std::string sum = "0";
    for (int i = 0; i < 50; ++i) {
        names.emplace_back("n" + std::to_string(i));
        sum += "+n" + std::to_string(i);
    }
    EXPECT_EQ(Formula("1", names).names().size(), 50U);
    EXPECT_EQ(Formula(sum).names().size(), 50U);
    EXPECT_EQ(failure([&] { const Formula more(sum + "+more"); }), "-1/9");
    const Formula free(sum + "+more", std::vector<Name>());
    EXPECT_EQ(free.free_names().size(), 51U);
    EXPECT_TRUE(free.warnings().empty());
    names.emplace_back("more");
    EXPECT_EQ(failure([&] { const Formula more("1", names); }), "-1/9");
}

TEST(Formula, FreeNamesAreTold) {
    const Formula f("strsub(s, n) + 价*a", {"a"});
    const std::vector<Name> names = f.free_names();
    ASSERT_EQ(names.size(), 3U);
    EXPECT_EQ(names[0].text, "s");
    EXPECT_EQ(names[0].kind, Kind::text);
    EXPECT_EQ(names[1].kind, Kind::integer);
    EXPECT_EQ(names[2].text, "价");
    EXPECT_EQ(failure([&] { f(1); }), "-1/10 @7/7+1/1");
    EXPECT_EQ(failure([] { Formula("1+价", std::vector<Name>())(); }), "-1/10 @2/2+3/1");
    EXPECT_EQ(failure([] { Formula("\"b\"+a+b", {"a"})(1); }), "-1/10 @6/6+1/1");
    const Formula open("1+b", {"a"}, MORANDEL_ALLOW_FREE_NAMES);
    EXPECT_EQ(failure([&] { open(1); }), "0/0 @2/2+1/1");
}

TEST(Formula, ValuesOfOtherKindsAreTaken) {
    const Formula f("strlen(s)", {"s"});
    EXPECT_EQ(f("abc").number(), 3.0);
    EXPECT_EQ(failure([&] { f(1); }), "none");
    const Formula g("a+1", {"a"});
    EXPECT_EQ(g(1).number(), 2.0);
    EXPECT_EQ(g("text").number(), 1.0);
    EXPECT_EQ(f("abcd").number(), 4.0);
}

TEST(Formula, CountsItsValues) {
    const Formula f("a+b", {"a", "b"});
    EXPECT_EQ(failure([&] { f(1); }), "-1/11");
    EXPECT_EQ(failure([&] { f(1, 2, 3); }), "-1/11");
    EXPECT_EQ(failure([&] { Formula("1", std::vector<Name>(51, "n")); }), "-1/9");
    std::string many = "a0";
    for (int i = 1; i <= 50; ++i) many += "+a" + std::to_string(i);
    EXPECT_EQ(failure_of(many), "-1/9");
    const std::vector<Name> fifty(50, "n");
    EXPECT_EQ(Formula("n", fifty).compute(std::vector<morandel::Argument>(50, 2.0)).number(), 2.0);
}

TEST(Formula, CanBeCopiedMovedAndShared) {
    Formula f("a*2", {"a"});
    const Formula copy = f;
    const Formula moved = std::move(f);
    f = copy;
    EXPECT_EQ(f(1).number() + copy(2).number() + moved(3).number(), 12.0);
    const Formula& itself = f;
    f = itself;
    EXPECT_EQ(f(4).number(), 8.0);
}

TEST(Formula, PreparesWithoutExceptions) {
    const auto good = Formula::prepare("a+1", {"a"});
    ASSERT_TRUE(good.has_value());
    EXPECT_EQ((*good)(1).number(), 2.0);
    const auto bad = Formula::prepare("1+");
    ASSERT_FALSE(bad);
    EXPECT_EQ(bad.error().number(), 30);
    EXPECT_EQ(bad.error().message(), "'+'或'-'后缺少表达式");
    EXPECT_STREQ(bad.error().what(),
                 "an operand is missing after + or - (error 30), at character 3");
    EXPECT_THROW((void)bad.value(), Error);
}

struct Told {
    const char* formula;
    const char* failure;
};

class Positions : public testing::TestWithParam<Told> {};

TEST_P(Positions, OfTheTokenThatFails) {
    EXPECT_EQ(failure_of(GetParam().formula), GetParam().failure);
}

constexpr Told refusals[] = {
    {"", "-1/3 @0/0+0/0"},
    {"   ", "-1/3 @3/3+0/0"},
    {" ;1", "-1/4 @1/1+1/1"},
    {"\"苹果", "-1/2 @0/0+7/3"},
    {"1+\"", "-1/2 @2/2+1/1"},
    {"苹果+\"ab", "-1/2 @7/3+3/3"},
    {"😀", "-1/5 @0/0+4/1"},
    {"1+\"梨😀\"", "-1/5 @6/4+4/1"},
    {"1+\xFF", "-1/6 @2/2+1/1"},
    {"\xE6\x9E", "-1/6 @0/0+1/1"},
    {"\xC0\xAF", "-1/6 @0/0+1/1"},
    {"\xED\xA0\x80", "-1/6 @0/0+1/1"},
    {"\x80", "-1/6 @0/0+1/1"},
    {"\xBF\xBF\xBF", "-1/6 @0/0+1/1"},
    {"\xC1\xBF", "-1/6 @0/0+1/1"},
    {"\xE0\x9F\xBF", "-1/6 @0/0+1/1"},
    {"\xE0\xA0\x80", "-1/5 @0/0+3/1"},
    {"\xED\xBF\xBF", "-1/6 @0/0+1/1"},
    {"\xF0\x8F\xBF\xBF", "-1/6 @0/0+1/1"},
    {"\xF4\x90\x80\x80", "-1/6 @0/0+1/1"},
    {"\xF5\x80\x80\x80", "-1/6 @0/0+1/1"},
    {"\xF4\x8F\xBF\xBF", "-1/5 @0/0+4/1"},
    {"\xF8\x90\x80\x80", "-1/6 @0/0+1/1"},
    {"\xC2\x80", "-1/5 @0/0+2/1"},
    {"\xF0\x90\x80\x80", "-1/5 @0/0+4/1"},
    {"(5!+)!\"abc", "30/0 @6/6+4/4"},
    {"1\xE6\xA2", "-1/6 @1/1+1/1"},
    {"(1+2", "33/0 @4/4+0/0"},
    {"1+", "30/0 @2/2+0/0"},
    {"梨* ", "31/0 @5/3+0/0"},
    {"2^", "32/0 @2/2+0/0"},
    {"1 2", "34/0 @2/2+1/1"},
    {"1%2", "34/0 @1/1+1/1"},
    {"()", "35/0 @1/1+1/1"},
    {"苹果(1)", "45/0 @6/2+1/1"},
    {"pi(1)", "46/0 @2/2+1/1"},
    {"sin()", "35/0 @4/4+1/1"},
};
INSTANTIATE_TEST_SUITE_P(Refusals, Positions, testing::ValuesIn(refusals));

constexpr Told failures[] = {
    {"1/0", "3/0 @1/1+1/1"},
    {"\"苹果\" equal \"梨\" = 1/0", "3/0 @24/18+1/1"},
    {"2+sqrt(0-4)*2", "5/0 @2/2+4/4"},
    {"sqrt(0-1)+ln(0)+tan(90)", "4/0 @16/16+3/3"},
    {"2.5!", "40/0 @3/3+1/1"},
    {"-3!", "74/0 @2/2+1/1"},
    {"if(1, 2, 1/0)", "3/0 @10/10+1/1"},
    {"preci(1/3, 16)", "51/0 @0/0+5/5"},
    {"1+mod(2, sin(0))", "76/0 @2/2+3/3"},
    {"5!+", "0/0 @3/3+0/0"},
    {"LEFT(\"abcd\", 2)", "59/0 @0/0+4/4"},
    {"1/0+sin(30)*sqrt(0-1)^2", "5/0 @12/12+4/4"},
};

TEST(Formula, FailuresTellTheOperatorOrFunction) {
    for (const Told& told : failures) {
        EXPECT_EQ(failure_of(told.formula), told.failure) << told.formula;
    }
}

TEST(Formula, ATooLongFormulaTellsWhatIsTooMuch) {
    EXPECT_EQ(failure_of(std::string(512, '1')), "none");
    EXPECT_EQ(failure_of(std::string(520, '1')), "-1/1 @512/512+8/8");
    std::string chinese = "\"";
    for (int i = 0; i < 255; ++i) chinese += "梨";
    EXPECT_EQ(failure_of(chinese + "\""), "none");
    EXPECT_EQ(failure_of(chinese + "梨\""), "-1/1 @766/256+4/2");
}

TEST(Formula, WhatFollowsTheSurrogatesIsACharacter) {
    EXPECT_NE(failure_of("\"\xEE\x80\x80\""), "-1/6 @1/1+1/1");
}

TEST(Formula, BytesThatBeginNoCharacterAreCountedOneByOne) {
    const auto position = [](const std::string& bytes) {
        return failure([&] {
            const Formula f(bytes, std::vector<Name>(), MORANDEL_CODE_PAGE_936);
            f();
        });
    };
    EXPECT_EQ(position("\"\xFEz\"+1/0"), "3/0 @6/5+1/1");
    EXPECT_EQ(position("\"\xFFz\"+1/0"), "3/0 @6/6+1/1");
    EXPECT_EQ(position("\"\x80z\"+1/0"), "3/0 @6/6+1/1");
}

TEST(Formula, ANulIsNotPartOfAFormula) {
    EXPECT_EQ(failure_of(std::string("1\0+1", 4)), "-1/15 @1/1+1/1");
    EXPECT_EQ(failure_of(std::string("1+1\0", 4)), "-1/15 @3/3+1/1");
}

TEST(Formula, TellsOfTextsThatDoNotConvert) {
    const Formula f("strlen(s)", {"n", "s"});
    EXPECT_EQ(failure([&] { f(1, "a😀"); }), "-1/5 @1/1+4/1");
    try {
        f(1, "a😀");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.value(), 1);
        EXPECT_EQ(error.english(), "code page 936 has no character '😀'");
    }
    EXPECT_EQ(failure([] { Formula("strsub(\"苹果\", 1, 1)")(); }), "-1/7");
    EXPECT_EQ(failure([] { Formula("1", {"😀"}); }), "-1/5 @0/0+4/1");
}

constexpr Told warnings[] = {
    {"1+1", ""},
    {"1;2", "-1/20 @1/1+2/2"},
    {"1 && 0", "-1/20 @2/2+4/4"},
    {"梨 ;苹果", "-1/20 @4/2+7/3"},
    {"2 .5", "-1/20 @2/2+2/2"},
    {"1,000", "-1/21 @1/1+4/4"},
    {"1 ", ""},
    {"left(\"abcd\",2)", "-1/25 @0/0+4/4"},
    {"left(strcase(\"abcd\", 0), 2)", ""},
    {"RIGHT(\"abcd\",2)", "-1/25 @0/0+5/5"},
    {"left(if(1,2,3), 2)", "-1/22 @0/0+4/4"},
    {"left(if(1,2,3), 2)+left(\"abcd\", 2)", "-1/22 @0/0+4/4"},
    {"strlen(\"a\")+left(\"abcd\", 2)", "-1/25 @12/12+4/4"},
    {"if(1)+left(\"abcd\", 2)", "-1/23 @0/0+2/2, -1/25 @6/6+4/4"},
    {"if(1, 2)+left(\"abcd\", 2)", "-1/23 @0/0+2/2"},
    {"strlen(r2s(1))+left(\"abcd\", 2)", "-1/25 @15/15+4/4"},
    {"strsub(\"abc\", 2)", "-1/25 @0/0+6/6"},
    {"strsub(\"abc\")", "-1/23 @0/0+6/6"},
    {"sqrt(\"梨\")+1", "-1/22 @0/0+4/4"},
    {"梨+\"a\"", "-1/22 @3/1+1/1"},
    {"\"a\"*2", "-1/22 @3/3+1/1"},
    {"-\"a\"", "-1/22 @0/0+1/1"},
    {"1 AND \"b\"", "-1/22 @2/2+3/3"},
    {"1 like \"b\"", "-1/22 @2/2+4/4"},
    {"\"a\"^1 equal left(\"ab\",2)",
     "-1/22 @3/3+1/1, -1/22 @6/6+5/5, -1/22 @6/6+5/5, -1/25 @12/12+4/4"},
    {"\"a\"!", "-1/22 @3/3+1/1"},
    {"preci(1, 2, 3)", "-1/24 @0/0+5/5"},
    {"mod(1)", "-1/23 @0/0+3/3"},
    {"\"a\"+1;2", "-1/22 @3/3+1/1, -1/20 @5/5+2/2"},
};

TEST(Formula, WarnsOfWhatIsRarelyMeant) {
    for (const Told& told : warnings) {
        EXPECT_EQ(warnings_of(told.formula), told.failure) << told.formula;
    }
    EXPECT_EQ(warnings_of("strlen(n)", {{"n", Kind::number}}), "-1/22 @0/0+6/6");
    EXPECT_EQ(warnings_of("strlen(n)", {{"n", Kind::text}}), "");
    EXPECT_EQ(warnings_of("strlen(n)", {"n"}), "");
    EXPECT_EQ(warnings_of("strsub(s, n)", {{"s", Kind::text}, {"n", Kind::number}}),
              "-1/25 @0/0+6/6");
    EXPECT_EQ(warnings_of("strsub(s, n, n)", {{"s", Kind::text}, {"n", Kind::number}}), "");
    EXPECT_EQ(warnings_of("strsub(s, s, n)", {{"s", Kind::text}, {"n", Kind::number}}),
              "-1/25 @0/0+6/6");
    EXPECT_EQ(warnings_of("strsub(s, \"a\", 2)", {{"s", Kind::text}}), "-1/22 @0/0+6/6");
    EXPECT_EQ(warnings_of("left(strcase(\"abcd\", n+1), n+1)", {"n"}), "");
    EXPECT_EQ(warnings_of("right(strcase(\"abcd\", n+1), n+1)", {"n"}), "");
    EXPECT_EQ(warnings_of("left(\"ab\") = left(\"ab\")"), "-1/23 @0/0+4/4, -1/23 @13/13+4/4");
    const auto notices = Formula("sqrt(\"a\")").warnings();
    ASSERT_EQ(notices.size(), 1U);
    EXPECT_EQ(notices[0].english(), "sqrt: operand 1 must be a number");
    EXPECT_EQ(notices[0].message(), "sqrt 的第 1 个操作数应为数值");
}

struct Said {
    const char* formula;
    const char* english;
    const char* message;
};

constexpr Said refusals_said[] = {
    {"", "the formula is empty", "公式为空"},
    {" ;1", "a formula cannot begin with ';'", "公式不能以“;”开头"},
    {"丂1", "a formula cannot begin with '丂'", "公式不能以“丂”开头"},
    {"\"苹果", "a text has no closing quote", "字符串缺少右引号"},
    {"1+\"梨😀\"", "code page 936 has no character '😀'", "代码页 936 没有字符“😀”"},
    {"1+\xFF", "byte 0xFF is not UTF-8", "字节 0xFF 不是 UTF-8"},
    {"\x0A\xE6\x9E", "byte 0xE6 is not UTF-8", "字节 0xE6 不是 UTF-8"},
    {"1+价", "the name '价' has no value", "名称“价”没有值"},
    {"strsub(\"苹果\", 1, 1)", "byte 0xC6 is no whole character of code page 936",
     "字节 0xC6 不是代码页 936 的完整字符"},
    {"2^", "an operand is missing after ^", "'^'后缺少表达式"},
};

TEST(Formula, SaysWhyInTwoLanguages) {
    for (const Said& said : refusals_said) {
        try {
            const Formula f(said.formula, std::vector<Name>());
            f();
            ADD_FAILURE() << said.formula;
        } catch (const Error& error) {
            EXPECT_EQ(error.english(), said.english) << said.formula;
            EXPECT_EQ(error.message(), said.message) << said.formula;
        }
    }
}

constexpr Said warnings_said[] = {
    {"1;2", "';' starts nothing; the text from there on is not read",
     "“;”不能开始任何符号, 其后的内容不被读取"},
    {"1丂梨", "'丂' starts nothing; the text from there on is not read",
     "“丂”不能开始任何符号, 其后的内容不被读取"},
    {"1,000", "the computation ends at ','; the text from there on does not count",
     "计算在“,”处结束, 其后的内容不参与计算"},
    {"1 like \"b\"", "like: operand 1 must be a text", "like 的第 1 个操作数应为字符串"},
    {"\"a\"*2", "*: operand 1 must be a number", "* 的第 1 个操作数应为数值"},
    {"2*\"a\"", "*: operand 2 must be a number", "* 的第 2 个操作数应为数值"},
    {"StrTrim(1, \"a\")", "StrTrim: operand 1 must be a text", "StrTrim 的第 1 个操作数应为字符串"},
    {"strtrims(1)", "strtrims: operand 1 must be a text", "strtrims 的第 1 个操作数应为字符串"},
    {"R2S(\"a\")", "R2S: operand 1 must be a number", "R2S 的第 1 个操作数应为数值"},
    {"mod(1)", "mod: too few arguments", "mod 的参数太少"},
    {"preci(1, 2, 3)", "preci: too many arguments", "preci 的参数太多"},
    {"LEFT(\"abcd\", 2)", "LEFT: its arguments cannot suffice", "LEFT 的参数不可能足够"},
    {"1+right(\"ab\", 1)", "right: its arguments cannot suffice", "right 的参数不可能足够"},
};

TEST(Formula, SaysWhatIsRarelyMeantInTwoLanguages) {
    for (const Said& said : warnings_said) {
        const auto notices = Formula(said.formula, std::vector<Name>()).warnings();
        ASSERT_EQ(notices.size(), 1U) << said.formula;
        EXPECT_EQ(notices[0].english(), said.english) << said.formula;
        EXPECT_EQ(notices[0].message(), said.message) << said.formula;
    }
}

// The checker counts those of some functions alone; each is told once, by place.
TEST(Formula, WarnsOfEveryCallOfTooFewOrTooManyArguments) {
    EXPECT_EQ(warnings_of("sqrt(\"a\",2)"), "-1/22 @0/0+4/4, -1/24 @0/0+4/4");
    EXPECT_EQ(warnings_of("(1)+int(1,2)+(sqrt(mod(4)))"), "-1/24 @4/4+3/3, -1/23 @19/19+3/3");
    for (const char* too_many :
         {"sqrt(1,2)", "sin(30,4)", "int(1,2)", "not(1,2)", "ln(1,2)", "strlen(\"a\",\"b\")",
          "strtrims(\"a\",1)", "s2r(\"a\",1)", "strfindn(\"a\",\"b\",3)",
          "strdelete(\"a\",\"b\",3)", "if(1,2,3,4)", "r2s(1,2,3)", "mod(1,2,3)", "preci(1,2,3)"}) {
        const auto notices = Formula(std::string(" ") + too_many).warnings();
        ASSERT_EQ(notices.size(), 1U) << too_many;
        EXPECT_EQ(notices[0].reason(), MORANDEL_REASON_TOO_MANY) << too_many;
        EXPECT_EQ(notices[0].position()->byte, 1U) << too_many;
    }
    for (const char* too_few :
         {"strcat(\"a\")", "strreplace(\"a\",\"b\")", "mod(1)", "sqrt(mod(1))"}) {
        const auto notices = Formula(too_few).warnings();
        ASSERT_EQ(notices.size(), 1U) << too_few;
        EXPECT_EQ(notices[0].reason(), MORANDEL_REASON_TOO_FEW) << too_few;
    }
    for (const char* well :
         {"strcat(\"a\",\"b\",\"c\")", "strsub(\"abc\",1,2)", "r2s(1)", "r2s(1,2)",
          "strmismatch(\"a\",\"b\",1,1,1)", "preci(1,2)", "if(1,2,3)", "((1))", "mod((1),(2))"}) {
        const auto prepared = Formula::prepare(well);
        ASSERT_TRUE(prepared) << well;
        EXPECT_TRUE(prepared->warnings().empty()) << well;
    }
}

TEST(Formula, ListsTheCheckersFaults) {
    const auto faults = Formula("梨+strlen(strtrims(1))").check();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].kind, 2);
    EXPECT_EQ(faults[0].operand, 1);
    EXPECT_EQ(faults[0].name, "strims");
    EXPECT_EQ(faults[0].wants, Kind::text);
    EXPECT_EQ(faults[0].position.byte, 11U);
    EXPECT_EQ(faults[0].position.character, 9U);
    EXPECT_EQ(faults[0].position.bytes, 8U);
    EXPECT_TRUE(Formula("1+1").check().empty());
    // A record of another call's list is told of by the name.
    const auto told = Formula("\"strlen\"(strlen(\"inf\"))").check();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].position.byte, 9U);
    EXPECT_EQ(told[0].position.bytes, 6U);
}

TEST(Formula, ComputesColumns) {
    const std::vector<double> prices{12.5, 0.0, 3.0};
    const std::vector<std::string> names{"苹果", "", "梨"};
    std::vector<double> numbers;
    const Formula share("100/price", {"price"});
    const auto status = share.columns({prices}, numbers);
    EXPECT_EQ(numbers, (std::vector<double>{8.0, 0.0, 100.0 / 3.0}));
    EXPECT_EQ(status, (std::vector<unsigned char>{0, MORANDEL_ROW_FAILED, 0}));
    const auto error = share.row_error({prices}, 1);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(words(error->notice()), "3/0 @3/3+1/1");
    EXPECT_FALSE(share.row_error({prices}, 0).has_value());

    std::vector<std::string> texts;
    const Formula label("strcat(name, sign, r2s(price))", {"name", "sign", "price"});
    EXPECT_EQ(label.columns({names, "·", prices}, texts), std::vector<unsigned char>(3));
    EXPECT_EQ(texts, (std::vector<std::string>{"苹果·12.5", "·0", "梨·3"}));
}

TEST(Formula, RefusesWhatItCannotTake) {
    EXPECT_EQ(failure([] { (void)Formula("1", std::vector<Name>(51, Name("a"))); }), "-1/9");
    morandel_formula* f = nullptr;
    ASSERT_EQ(morandel_formula_prepare("strcat(s, r2s(n))", 17, nullptr, 0, 0, &f, nullptr), 1);
    EXPECT_EQ(morandel_formula_name(f, 0, nullptr), 0);
    morandel_value values[] = {morandel_text("a", 1), morandel_number(1.0)};
    values[1].type = -2;
    EXPECT_EQ(morandel_formula_compute(f, values, 2, nullptr, nullptr), 0);
    morandel_faults* faults = nullptr;
    ASSERT_EQ(morandel_formula_check(f, &faults, nullptr), 1);
    EXPECT_EQ(morandel_faults_get(faults, 0, nullptr), 0);
    morandel_faults_free(faults);

    const double numbers[] = {1.0, 2.0};
    const std::int32_t offsets[] = {0, 1, 2};
    morandel_column columns[] = {
        {MORANDEL_TEXT, nullptr, 0, "ab", offsets, sizeof offsets[0], 2},
        {MORANDEL_NUMBER, numbers, sizeof(double), nullptr, nullptr, 0, 0}};
    morandel_texts* texts = nullptr;
    EXPECT_EQ(morandel_formula_row_error(f, columns, 2, 2, 1, MORANDEL_TEXT, nullptr), 0);
    columns[0].size = 1;
    EXPECT_EQ(morandel_formula_text_columns(f, columns, 2, 2, &texts, nullptr, nullptr), 0);
    columns[0].offsets = nullptr;
    EXPECT_EQ(morandel_formula_text_columns(f, columns, 2, 2, &texts, nullptr, nullptr), 1);
    std::size_t size = 0;
    EXPECT_EQ(std::string_view(morandel_texts_bytes(texts, &size), 4), "a1a2");
    morandel_texts_free(texts);
    morandel_formula_free(f);
}

TEST(Formula, ColumnsOfAFormulaThatIsAcceptedAndFails) {
    const Formula f("n!,", {"n"});
    EXPECT_EQ(failure([&] { f(5); }), "41/0 @3/3+0/0");
    std::vector<double> results;
    EXPECT_EQ(f.columns({std::vector<double>{5.0}}, results),
              std::vector<unsigned char>{MORANDEL_ROW_FAILED});
}

TEST(Formula, ColumnsComeInTheLayoutsThatToolsShare) {
    const std::string bytes = "ab苹果c";
    const std::vector<std::int32_t> narrow{0, 2, 8, 9};
    const std::vector<std::int64_t> wide{0, 2, 8, 9};
    const double pairs[] = {1.0, -1.0, 2.0, -1.0, 3.0, -1.0};
    const Formula f("strlen(s)*n+k", {"s", "n", "k"});
    const Column numbers(pairs, 3, 2 * sizeof(double));
    const std::vector<double> wanted{12.0, 18.0, 13.0};
    std::vector<double> results;
    (void)f.columns({Column(bytes.data(), narrow.data(), 3), numbers, 10.0}, results);
    EXPECT_EQ(results, wanted);
    (void)f.columns({Column(bytes.data(), wide.data(), 3), numbers, 10.0}, results);
    EXPECT_EQ(results, wanted);
    // Whichever row is the one that is not ASCII.
    const std::string first = "苹果abc";
    const std::vector<std::int32_t> offsets{0, 6, 7, 9};
    (void)f.columns({Column(first.data(), offsets.data(), 3), 1.0, 0.0}, results);
    EXPECT_EQ(results, (std::vector<double>{4.0, 1.0, 2.0}));
    std::vector<std::string> texts;
    (void)Formula("strsub(s, 1, 4)", {"s"})
        .columns({Column(first.data(), offsets.data(), 3)}, texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"苹果", "a", "bc"}));
    // The first offset need not be 0, nor what lies before it like what is there.
    const std::string behind = "0123456789abcdef苹果";
    const std::vector<std::int32_t> far{8, 14};
    (void)Formula("strsub(s, 1, 4)", {"s"})
        .columns({Column(behind.data() + 8, far.data(), 1)}, texts);
    EXPECT_EQ(texts, (std::vector<std::string>{"苹果"}));
    // More rows than their room is told from.
    const std::vector<std::string> many(100, "梨");
    (void)Formula("strcat(s, s, k)", {"s", "k"}).columns({many, "·"}, texts);
    EXPECT_EQ(texts, std::vector<std::string>(100, "梨梨·"));
}

// Numbers between others, as in records without gaps.
TEST(Formula, ColumnsOfNumbersNeedNotBeAligned) {
    const Formula f("n*2", {"n"});
    for (const std::size_t begin : {0, 1, 4, 8}) {
        for (const std::size_t stride : {8, 9, 12, 16}) {
            alignas(double) char records[64]{};
            for (std::size_t row = 0; row < 3; ++row) {
                const double number = 1.5 + static_cast<double>(row);
                std::memcpy(records + begin + row * stride, &number, sizeof number);
            }
            const auto* numbers = reinterpret_cast<const double*>(records + begin);
            std::vector<double> results;
            (void)f.columns({Column(numbers, 3, stride)}, results);
            EXPECT_EQ(results, (std::vector<double>{3.0, 5.0, 7.0})) << begin << ' ' << stride;
        }
    }
    // Nor apart.
    const std::string bytes = "@@@@@@@@AB";
    std::vector<double> results;
    (void)Formula("n+strlen(\"\")", {"n"})
        .columns({Column(reinterpret_cast<const double*>(bytes.data()), 3, 1)}, results);
    for (std::size_t row = 0; row < 3; ++row) {
        double number = 0.0;
        std::memcpy(&number, bytes.data() + row, sizeof number);
        EXPECT_EQ(results[row], number);
    }
}

TEST(Formula, ASingleNumberIsSeenWith20Decimals) {
    std::vector<double> results;
    (void)Formula("n*10^30+m", {"n", "m"}).columns({1e-25, std::vector<double>{1.0, 2.0}}, results);
    EXPECT_EQ(results, (std::vector<double>{1.0, 2.0}));
}

TEST(Formula, ColumnsTellWhatBecomesOfEachRow) {
    const std::vector<std::string> names{"苹果", "😀", "梨"};
    const Formula f("strsub(s, 1, n)", {"s", "n"});
    std::vector<std::string> texts;
    const std::vector<Column> values{names, std::vector<double>{1.0, 2.0, 2.0}};
    EXPECT_EQ(f.columns(values, texts),
              (std::vector<unsigned char>{MORANDEL_ROW_NO_TEXT, MORANDEL_ROW_NO_TEXT, 0}));
    EXPECT_EQ(texts, (std::vector<std::string>{"", "", "梨"}));
    EXPECT_EQ(words(f.row_error(values, 0, Kind::text)->notice()), "-1/7");
    EXPECT_EQ(words(f.row_error(values, 1, Kind::text)->notice()), "-1/5 @0/0+4/1");
    EXPECT_EQ(words(f.row_error(values, 2, Kind::number)->notice()), "-1/12");
    EXPECT_FALSE(f.row_error(values, 2, Kind::text).has_value());
    std::vector<double> numbers;
    EXPECT_EQ(f.columns(values, numbers)[2], MORANDEL_ROW_OTHER_TYPE);
    const Formula one("1+n", {"n"});
    EXPECT_EQ(one.columns({2.0}, texts), std::vector<unsigned char>{MORANDEL_ROW_OTHER_TYPE});
    EXPECT_EQ(words(one.row_error({2.0}, 0, Kind::text)->notice()), "-1/13");
    EXPECT_EQ(f.columns({"😀", std::vector<double>{1.0, 2.0}}, texts),
              std::vector<unsigned char>(2, MORANDEL_ROW_NO_TEXT));
}

TEST(Formula, ColumnsMustFit) {
    const Formula f("strlen(s)", {"s"});
    std::vector<double> results;
    EXPECT_EQ(failure([&] { (void)f.columns({1.0, 2.0}, results); }), "-1/11");
    const std::vector<int> falling{0, 2, 1};
    EXPECT_EQ(failure([&] { (void)f.columns({Column("abc", falling.data(), 2)}, results); }),
              "-1/15");
    EXPECT_EQ(failure([&] { (void)f.columns({Column("abc", falling.data() + 1, 1)}, results); }),
              "-1/15");
    const std::vector<double> rows{1.0};
    double result = 0.0;
    EXPECT_THROW((void)f.columns({rows}, 2, &result), std::invalid_argument);
    (void)f.columns({std::vector<double>()}, results);
    EXPECT_TRUE(results.empty());
}

TEST(Formula, NumbersAloneTellWhyTheyFail) {
    const Formula f("1/a", {"a"});
    const double zero = 0.0;
    const double two = 2.0;
    EXPECT_EQ(f.compute_numbers(&two, 1), 0.5);
    EXPECT_EQ(failure([&] { (void)f.compute_numbers(&zero, 1); }), "3/0 @1/1+1/1");
    EXPECT_THROW((void)Formula("\"a\"").compute_numbers(nullptr, 0), std::logic_error);
}

}  // namespace
