// Every formula of a few tokens, and every function with every mix of arguments, on the library and
// its model: new evaluators, ones that are used again and again, and checkers.
// MORANDEL_EXHAUSTIVE_TOKENS sets the longest formulas, 4 unless set.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <morandel.h>
#include "tests/pair.h"

namespace {

using morandel::pairs::Checkers;
using morandel::pairs::Evaluators;

void declare(Evaluators& pair) {
    pair.set_count(2);
    pair.set_number(1, "a", 3.0);
    pair.set_text(2, "s", "abcab");
}

class Judge {
  public:
    void formula(const std::string& text) {
        ++m_count;
        Evaluators fresh;
        declare(fresh);
        m_accepted += fresh.load(text);
        m_computed += fresh.calculate();
        fresh.calculate();
        ASSERT_EQ(fresh.difference().text(), "") << text;

        // Not for ever: what formulas leave for one another makes all of them slow.
        if (m_count % 500 == 1) declare(m_used.emplace());
        for (int times = 0; times < 2; ++times) {
            m_used->load(text);
            m_used->calculate();
        }
        m_used->load(text);
        m_used->verify();
        m_used->calculate();
        ASSERT_EQ(m_used->difference().text(), "") << text << ", used again";

        if (m_count % 500 == 1) {
            m_check.emplace();
            m_check->set_number(1, "a", 3.0);
            m_check->set_text(2, "s", "abcab");
        }
        if (m_count % 2 == 0) m_check->reset();
        m_faulty += m_check->check(text) ? 1 : 0;
        ASSERT_EQ(m_check->difference().text(), "") << text << ", checked";
    }

    void report() const {
        std::printf("%ld formulas, %ld accepted, %ld computed, %ld with faults of type\n", m_count,
                    m_accepted, m_computed, m_faulty);
        EXPECT_GT(m_faulty, 0);
        EXPECT_GT(m_computed, 0);
    }

  private:
    std::optional<Evaluators> m_used;
    std::optional<Checkers> m_check;
    long m_count = 0;
    long m_accepted = 0;
    long m_computed = 0;
    long m_faulty = 0;
};

std::size_t most_tokens() {
    const char* wanted = std::getenv("MORANDEL_EXHAUSTIVE_TOKENS");
    return wanted == nullptr ? 4 : std::strtoul(wanted, nullptr, 10);
}

TEST(Exhaustive, EveryFormulaOfAFewTokens) {
    const std::vector<std::string> tokens = {
        "1", "0.5", "a",   "s",    "v", "\"x\"", "pi", "+",   "-",      "*",      "/",  "^",
        "!", "=",   "and", "like", "(", ")",     ",",  "int", "strlen", "strsub", "if", "mod"};
    Judge judge;
    for (std::size_t length = 1; length <= most_tokens(); ++length) {
        std::vector<std::size_t> picked(length);
        for (bool more = true; more;) {
            std::string text;
            for (const std::size_t token : picked) text += tokens[token] + ' ';
            judge.formula(text);
            if (HasFatalFailure()) return;
            more = false;
            for (std::size_t& token : picked) {
                if (++token < tokens.size()) {
                    more = true;
                    break;
                }
                token = 0;
            }
        }
    }
    judge.report();
}

// Arguments from these, up to one more than the function takes.
void every_call(Judge& judge, const std::string& head, std::size_t left_over) {
    judge.formula(head + ")");
    if (left_over == 0 || testing::Test::HasFatalFailure()) return;
    for (const char* argument : {"2", "\"ab\"", "s", "a"}) {
        every_call(judge, head + (head.back() == '(' ? "" : ",") + argument, left_over - 1);
    }
}

TEST(Exhaustive, EveryFunctionWithEveryMixOfArguments) {
    Judge judge;
    for (const morandel::Function& function : morandel::functions()) {
        std::size_t most = 0;
        for (const char kind : function.kinds) most += kind != '[' ? 1 : 0;
        every_call(judge, std::string(function.name) + "(", most + 1);
        if (HasFatalFailure()) return;
    }
    judge.report();
}

// With numbers at and beyond every limit.
TEST(Exhaustive, LongFormulasOfNumbers) {
    std::mt19937 random(10);
    const auto pick = [&](const auto& from) { return from[random() % std::size(from)]; };
    constexpr double numbers[] = {0.0,  1.0,  -1.0,    2.5,      1e-15,     9e-15,    1e-5, 45.0,
                                  90.0, 1e15, 1.6e308, 1.75e308, -1.75e308, HUGE_VAL, NAN,  -0.0};
    const std::string zeros(308, '0');
    const std::string operands[] = {"a",
                                    "b",
                                    "rate",
                                    "long",
                                    "0",
                                    "1",
                                    "2.5",
                                    "0.50",
                                    "90",
                                    "123456789012345678",
                                    "0.1234567890123456789",
                                    "1" + zeros,
                                    "50" + zeros,
                                    "pi"};
    constexpr const char* functions[] = {"",     "",    "",       "-",     "+",   "sqrt",
                                         "sin",  "tan", "ctan",   "ln",    "log", "int",
                                         "deci", "not", "arcsin", "arctan"};
    constexpr const char* operators[] = {"+",   "-",    "*",     "/",    "^",
                                         " > ", " <= ", " and ", " or ", " = "};
    long computed = 0;
    for (int round = 0; round < 100'000; ++round) {
        std::string text;
        int open = 0;
        const std::size_t count = 1 + random() % 12;
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0) text += pick(operators);
            for (std::size_t more = random() % 3; more > 0; --more, ++open)
                text += pick(functions) + std::string("(");
            if (random() % 4 == 0) text += pick(functions) + std::string(" ");
            text += pick(operands);
            while (open > 0 && random() % 2 == 0) {
                text += ')';
                --open;
            }
        }
        text.append(static_cast<std::size_t>(open), ')');

        Evaluators pair;
        pair.set_count(4);
        int slot = 0;
        for (const char* name : {"b", "rate", "a", "long"}) {
            pair.set_number(++slot, name, pick(numbers));
        }
        pair.load(text);
        computed += pair.calculate();
        ASSERT_EQ(pair.difference().text(), "") << text;
    }
    EXPECT_GT(computed, 10'000);
}

}  // namespace
