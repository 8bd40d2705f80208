// Every formula of a few tokens, and every function with every mix of arguments: nothing crashes or
// hangs, the compiled way gives what the levels give, and an evaluator that is used again gives
// what a new one gives. MORANDEL_EXHAUSTIVE_TOKENS sets the longest formulas, 4 unless set.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "morandel.h"

namespace {

// With what tests of the ways through it need.
struct Evaluator : CExpress {
    using CExpress::memory;
    using CExpress::missing_name;
    using CExpress::parameters;

    Evaluator() {
        SetNumberOfPara(2);
        MYPARA a{"a", 3.0, ""};
        MYPARA s{"s", 0.0, "abcab"};
        SetPara(&a, 1, false);
        SetPara(&s, 2, true);
    }
    // Leaves nothing but the levels to compute a loaded formula.
    void forbid_program() { seek(0); }
    // By all rules of the grammar, however the formula was loaded.
    int verify() {
        seek(0);
        return VerifyExpression();
    }
};

// All that a host can see of an evaluation.
struct Outcome {
    int accepted = 0;
    int expression_status = 0;
    int variables = 0;
    int computed = 0;
    int error = 0;
    int type = 0;
    std::uint64_t bits = 0;
    std::string text;
    std::string message;
    int again = 0;  // of a second calculation, which has nothing to read

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return out << "accepted " << o.accepted << " status " << o.expression_status << " variables "
               << o.variables << " computed " << o.computed << " error " << o.error << " type "
               << o.type << " number " << std::bit_cast<double>(o.bits) << " text " << o.text
               << " again " << o.again;
}

Outcome outcome_of(Evaluator& e, const std::string& formula, bool by_levels) {
    Outcome o;
    o.accepted = e.SetExpression(formula.c_str());
    o.expression_status = e.GetExpressionStatus();
    if (o.accepted != 0) o.variables = e.GetVariableNum();
    if (by_levels) {
        if (o.accepted != 0) {
            EXPECT_EQ(e.verify(), 1) << formula;
        }
        e.forbid_program();
    }
    o.computed = e.CalcExpression();
    o.error = e.GetErrorNumber();
    o.type = e.GetResultType();
    o.bits = std::bit_cast<std::uint64_t>(e.GetResult());
    o.text = e.m_StrResult;
    o.message = e.m_ErrorMessage;
    o.again = e.CalcExpression();
    return o;
}

class Judge {
  public:
    void formula(const std::string& text) {
        ++m_count;
        Evaluator plain;
        const Outcome wanted = outcome_of(plain, text, true);
        Evaluator fresh;
        ASSERT_EQ(outcome_of(fresh, text, false), wanted) << text;
        if (!fresh.missing_name().empty()) fails_for_its_missing_name(text);

        // What earlier formulas left behind counts, so an evaluator where they did goes.
        const CExpress nothing_pending;
        if (!m_used) m_used.emplace();
        // Some refusals leave the status as it was: 0, as in a new one.
        m_used->SetExpression("0");
        m_check.SetExpression("0");
        const auto before = m_used->memory();
        ASSERT_EQ(outcome_of(*m_used, text, false), wanted) << text << ", used again";
        if (m_used->memory() == before) {
            ASSERT_EQ(outcome_of(*m_used, text, false), wanted) << text << ", loaded again";
        }
        if (!(m_used->memory() == before)) m_used.reset();

        m_check.Reset();
        const bool faulty = m_check.CheckExpression(text.c_str());
        if (wanted.accepted == 0) {
            ASSERT_FALSE(faulty) << text;
        }
        ASSERT_EQ(m_check.GetExpressionStatus(), wanted.expression_status) << text;
        if (faulty) ++m_faulty;
        m_accepted += wanted.accepted;
        m_computed += wanted.computed;
    }

    void report() const {
        std::printf(
            "%ld formulas, %ld accepted, %ld computed, %ld with faults of type, %ld lack a name\n",
            m_count, m_accepted, m_computed, m_faulty, m_lacking);
        EXPECT_GT(m_computed, 0);
        EXPECT_GT(m_faulty, 0);
    }

  private:
    // Batches count on it that such a formula goes on failing and leaves nothing behind, whether
    // the constant that was read before it was a number or a text.
    void fails_for_its_missing_name(const std::string& text) {
        ++m_lacking;
        for (const char* before : {"a", "s"}) {
            Evaluator e;
            e.SetExpression(before);
            const auto changes = e.memory().changes;
            ASSERT_EQ(e.SetExpression(text.c_str()), 1) << text;
            ASSERT_LT(e.parameters().find(e.missing_name()), 0) << text;
            ASSERT_EQ(e.CalcExpression(), 0) << text;
            const auto after = e.memory();
            ASSERT_EQ(after.changes, changes) << text;
            e.SetExpression("strlen");
            ASSERT_EQ(e.SetExpression(text.c_str()), 1) << text;
            ASSERT_EQ(e.CalcExpression(), 0) << text;
            ASSERT_TRUE(e.memory() == after) << text;
        }
    }

    std::optional<Evaluator> m_used;
    CExpressionCheck m_check;
    long m_count = 0;
    long m_accepted = 0;
    long m_computed = 0;
    long m_faulty = 0;
    long m_lacking = 0;
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

// What is compiled and what is not, with numbers at and beyond every limit.
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
    long compiled = 0;
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

        Evaluator fast;
        Evaluator plain;
        for (Evaluator* e : {&fast, &plain}) e->SetNumberOfPara(6);
        int slot = 2;
        for (const char* name : {"b", "rate", "a", "long"}) {
            MYPARA parameter{name, pick(numbers), ""};
            ++slot;
            for (Evaluator* e : {&fast, &plain}) e->SetPara(&parameter, slot, false);
        }
        const Outcome wanted = outcome_of(plain, text, true);
        ASSERT_EQ(outcome_of(fast, text, false), wanted) << text;
        compiled += wanted.computed;
    }
    EXPECT_GT(compiled, 10'000);
}

}  // namespace
