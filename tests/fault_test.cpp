// Memory that runs out: each call, with its first, second, third ... allocation failing, once or
// from then on. What comes out is std::bad_alloc, nothing leaks, and the objects answer afterwards.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>

#include <morandel.h>
#include <morandel/formula.hpp>

namespace {

long live = 0;           // allocations that are not given back
long left_to_fail = -1;  // allocations until one fails; negative: none does
bool fails_on = false;   // and all after it do

bool fails() {
    if (left_to_fail < 0 || --left_to_fail > 0) return false;
    left_to_fail = fails_on ? 1 : -1;
    return true;
}

}  // namespace

// Not inlined, or the compiler takes free for what belongs to another allocator.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (fails()) throw std::bad_alloc();
    void* room = std::malloc(size);
    if (room == nullptr) throw std::bad_alloc();
    ++live;
    return room;
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
[[gnu::noinline]] void operator delete(void* room) noexcept {
    if (room != nullptr) --live;
    std::free(room);
}
[[gnu::noinline]] void operator delete(void* room, std::size_t) noexcept {
    ::operator delete(room);
}

namespace {

const std::string long_text(200, 'x');

struct Objects {
    CExpress evaluator;
    CExpressionCheck check;
    CVariableExpressList list;
    CVariableExpress record{CVariableExpress::given, "record", 1.0, "a formula of some length"};
    std::string text;

    void set_parameters() {
        MYPARA number{"a long name of a parameter", 3.0, ""};
        MYPARA s{"s", 0.0, long_text};
        evaluator.SetNumberOfPara(2);
        evaluator.SetPara(&number, 1, false);
        evaluator.SetPara(&s, 2, true);
    }

    // What must work whatever has failed before.
    void expect_answers() {
        set_parameters();
        evaluator.ClearOld();
        set_parameters();
        ASSERT_EQ(evaluator.SetExpression("1+2*3"), 1);
        ASSERT_EQ(evaluator.CalcExpression(), 1);
        ASSERT_EQ(evaluator.GetResult(), 7.0);
        ASSERT_EQ(evaluator.SetExpression("strlen(s)+free"), 1);
        ASSERT_EQ(evaluator.GetVariableNum(), 1);
        ASSERT_EQ(evaluator.SetExpression("strlen(strtrims(s))"), 1);
        ASSERT_EQ(evaluator.CalcExpression(), 1);
        ASSERT_EQ(evaluator.GetResult(), 200.0);
        check.Reset();
        ASSERT_TRUE(check.CheckExpression("sqrt(\"a\")"));
        ASSERT_EQ(check.m_errors.size(), 1U);
        list.Free();
        list.Append(CVariableExpress::computed, "y", 0.0, "x*2");
        list.Append(CVariableExpress::given, "x", 21.0, "");
        ASSERT_EQ(list.Cal(), 1);
        ASSERT_EQ(list.FindByNameAndGetValue("y"), 42.0);
    }
};

// Fails each allocation of the calls in turn. Says how many there were.
long fail_each(const std::function<void(Objects&)>& calls) {
    // What is kept for the process is there before anything is counted.
    for (int warm = 0; warm < 2; ++warm) {
        Objects objects;
        calls(objects);
        objects.expect_answers();
    }
    for (const bool from_then_on : {false, true}) {
        for (long n = 1;; ++n) {
            const long before = live;
            bool failed = false;
            {
                Objects objects;
                left_to_fail = n;
                fails_on = from_then_on;
                try {
                    calls(objects);
                } catch (const std::bad_alloc&) {
                    failed = true;
                }
                const bool reached = left_to_fail < 0 || (from_then_on && failed);
                left_to_fail = -1;
                objects.expect_answers();
                if (!reached && from_then_on) return n - 1;
                if (!reached) break;
                EXPECT_TRUE(failed) << "a failed allocation went unseen";
            }
            EXPECT_EQ(live, before) << "allocation " << n;
            if (testing::Test::HasFailure() || n > 10'000) return n;
        }
    }
    return 0;
}

TEST(Fault, Construction) {
    EXPECT_GT(fail_each([](Objects&) { const Objects more; }), 0);
}

TEST(Fault, Parameters) {
    EXPECT_GT(fail_each([](Objects& o) { o.set_parameters(); }), 2);
}

// Whether memory runs out while the formula is computed; it does not again then.
bool runs_out(CExpress& evaluator) {
    try {
        evaluator.CalcExpression();
        return false;
    } catch (const std::bad_alloc&) {
        left_to_fail = -1;
        return true;
    }
}

// Texts that it had pushed lay in parameters, which have other texts by now.
TEST(Fault, OfAnEvaluationThatRanOutOfMemoryNothingIsRead) {
    EXPECT_GT(fail_each([](Objects& o) {
                  o.set_parameters();
                  o.evaluator.SetExpression("strcat(s, s, strcat(s, s, s), s)");
                  const bool failed = runs_out(o.evaluator);
                  MYPARA s{"s", 0.0, std::string(200, 'y')};
                  o.evaluator.SetPara(&s, 2, true);
                  o.evaluator.SetExpression("strfindn(\"y\")");
                  o.evaluator.CalcExpression();
                  EXPECT_EQ(o.evaluator.GetResult(), 0.0);
                  if (failed) throw std::bad_alloc();
              }),
              3);
}

// The same of the text by which strcat finds its further texts.
TEST(Fault, OfAnEvaluationThatRanOutOfMemoryNothingIsFound) {
    EXPECT_GT(fail_each([](Objects& o) {
                  o.set_parameters();
                  o.evaluator.SetExpression("strcase(\"q\", \"old\")");
                  o.evaluator.CalcExpression();
                  o.evaluator.SetExpression("strcat(s, s, strcat(s, s, s), s)");
                  const bool failed = runs_out(o.evaluator);
                  MYPARA s{"s", 0.0, std::string(200, 'y')};
                  o.evaluator.SetPara(&s, 2, true);
                  o.evaluator.SetExpression("strcat(s)");
                  EXPECT_EQ(o.evaluator.CalcExpression(), 1) << "its further texts are nowhere";
                  if (failed) throw std::bad_alloc();
              }),
              3);
}

TEST(Fault, WhatEarlierEvaluationsLeftStays) {
    for (const char* formula : {"strlen(strtrim(\"a\", \"abc\"), strcase(s, s))",
                                "strcat(\"q\", \"z\", strcase(s, s))"}) {
        EXPECT_GT(fail_each([formula](Objects& o) {
                      o.set_parameters();
                      o.evaluator.SetExpression("strcase(\"q\", \"old\")");
                      o.evaluator.CalcExpression();
                      o.evaluator.SetExpression(formula);
                      const bool failed = runs_out(o.evaluator);
                      o.evaluator.SetExpression("strcat(\"\")");
                      o.evaluator.CalcExpression();
                      EXPECT_TRUE(o.evaluator.m_StrResult.starts_with("old"))
                          << o.evaluator.m_StrResult;
                      if (failed) throw std::bad_alloc();
                  }),
                  3)
            << formula;
    }
}

TEST(Fault, Formulas) {
    for (const char* formula : {"1+2*3",
                                "sqrt(a^2+1)",
                                "strcat(s, \"literal of some length\", s)",
                                "strsub(s, 2, 150)",
                                "free+another free",
                                "strreplace(\"yy\", \"x\", s)",
                                "preci(2.675, 2)",
                                "mod(7, 4)",
                                "1/0",
                                "strcase(s)",
                                "left(s, 100)",
                                "r2s(1/3)",
                                "strcat(strcat(s, s), s)",
                                "if(1, s, s)",
                                "(1",
                                "1+\"",
                                "strinsert(s, s, 3)",
                                "s equal s",
                                "strdelete(\"x\", s)",
                                "strtrim(\"x\", s)",
                                "5!+"}) {
        EXPECT_GT(fail_each([formula](Objects& o) {
                      o.set_parameters();
                      o.evaluator.SetExpression(formula);
                      o.evaluator.VerifyExpression();
                      o.evaluator.SetExpression(formula);
                      o.evaluator.CalcExpression();
                      int type = 0;
                      o.text = o.evaluator.GetVariable(1, &type);
                      o.evaluator.CalcExpression();
                      o.evaluator.SetExpression(nullptr);
                      o.evaluator.ClearOld();
                  }),
                  0)
            << formula;
    }
}

// Tokens of a compiled formula are made when they are asked for.
TEST(Fault, ACompiledFormulaThatFails) {
    EXPECT_GT(fail_each([](Objects& o) {
                  o.evaluator.SetExpression("1/(2-2)");
                  o.evaluator.CalcExpression();
              }),
              0);
}

TEST(Fault, TheChecker) {
    EXPECT_GT(fail_each([](Objects& o) {
                  for (const char* formula :
                       {"sqrt(\"a\")+strlen(1)*mod(2)", "strcat(1, strsub(2, \"a\"))",
                        "((((1+2))))", "1+\"", "left(1)"}) {
                      o.check.CheckExpression(formula);
                  }
                  o.text = o.check.GetExpressionError(0).strName;
              }),
              5);
}

TEST(Fault, Lists) {
    EXPECT_GT(fail_each([](Objects& o) {
                  o.list.Append(CVariableExpress::computed, "total of a long name", 0.0,
                                "price*count+1");
                  o.list.Append(CVariableExpress::given, "price", 3.0, "");
                  o.list.FindByName("price");
                  o.list.Append(CVariableExpress::given, "count", 2.0, "");
                  o.list.Append(CVariableExpress::given, "count", 5.0, "");
                  o.list.AppendString(CVariableExpress::given, "t", long_text.c_str(), "");
                  o.list.Append(CVariableExpress::computed, "u", 0.0, "strcat(t, t, \"a\")");
                  o.list.Append(CVariableExpress::computed, "never", 0.0, "never+1");
                  o.list.Cal();
                  o.list.DeleteOneNodeByName("count");
                  o.text = o.list.FindByNameAndGetStrValue("u");
                  CVariableExpressList copy(o.list);
                  copy.Append(CVariableExpress::given, "more", 1.0, "");
                  copy = CVariableExpressList();
                  int error = 0;
                  o.list.GetExpressionError(&error, &error);
              }),
              20);
}

TEST(Fault, Records) {
    EXPECT_GT(fail_each([](Objects& o) {
                  CVariableExpress other(CVariableExpress::computed, long_text.c_str(),
                                         long_text.c_str(), "1");
                  other.SetExp(long_text.c_str());
                  o.record = other;
                  o.record.SetName("another name of some length");
                  o.record.SetStrValue(long_text);
                  o.record.GetName(o.text);
                  o.record.GetExp(o.text);
                  o.text = o.record.GetStrValue();
                  CCStringNode node(long_text.c_str());
                  const CCStringNode copy = node;
                  o.text = copy.m_strText;
                  morandel::number_to_text(1e300, -1, o.text);
              }),
              8);
}

TEST(Fault, PreparedFormulas) {
    EXPECT_GT(fail_each([](Objects& o) {
                  const morandel::Formula f(
                      "strcat(a_longer_name, r2s(another_name, 2), \"苹果\");",
                      {"a_longer_name", "another_name"});
                  (void)f.warnings();
                  (void)f.check();
                  (void)f.names();
                  o.text = f("苹果", 1.5).text();
                  o.text = f(1.5, "苹果").text();
                  std::vector<std::string> texts;
                  (void)f.columns({std::vector<std::string>{"a", "梨"}, 2.0}, texts);
                  std::vector<double> numbers;
                  (void)f.columns({std::vector<std::string>{"a", "梨"}, 2.0}, numbers);
                  (void)f.row_error({"a", 2.0}, 0);
              }),
              20);
}

TEST(Fault, ACallWithoutMemorySaysSo) {
    morandel_formula* formula = nullptr;
    morandel_error* error = nullptr;
    left_to_fail = 1;
    fails_on = true;
    const int made =
        morandel_formula_prepare("a longer formula", 16, nullptr, 0, 0, &formula, &error);
    left_to_fail = -1;
    EXPECT_EQ(made, 0);
    EXPECT_EQ(formula, nullptr);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(morandel_error_number(error), -1);
    EXPECT_EQ(morandel_error_reason(error), MORANDEL_REASON_NO_MEMORY);
    EXPECT_EQ(morandel_error_value(error), -1);
    EXPECT_EQ(morandel_error_position(error, nullptr), 0);
    EXPECT_STREQ(morandel_error_english(error, nullptr), "out of memory");
    EXPECT_STREQ(morandel_error_message(error, nullptr), "内存不足");
    morandel_error_free(error);
}

TEST(Fault, PreparedFormulasThatFail) {
    for (const char* formula :
         {"1/0+\"苹果\"", "1+\"苹果", "苹果+1", "\"😀\"", "strsub(\"苹果\", 1, 1)", "5!+"}) {
        EXPECT_GT(fail_each([formula](Objects& o) {
                      const auto f =
                          morandel::Formula::prepare(formula, std::vector<morandel::Name>());
                      try {
                          if (f) (void)(*f)();
                      } catch (const morandel::Error& error) {
                          o.text = error.message();
                      }
                  }),
                  0)
            << formula;
    }
}

}  // namespace
