// Which formulas are recorded while they are read, and which of those are computed as numbers
// alone. What they give is the same either way, so only this tells whether the quick way is taken.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

#include "engine/levels.h"
#include "engine/machine.h"
#include "engine/well_formed_text.h"
#include "formula/places.h"

namespace {

using namespace morandel;

struct Reading {
    explicit Reading(const char* formula) {
        m_registers.make_room(longest_formula);
        m_parameters.set_count(4);
        m_parameters.set_number(0, "a", 3.0);
        m_parameters.set_number(1, "rate", 0.5);
        m_parameters.set_number(2, "a parameter of sixteen", 1.0);
        m_parameters.set_text(3, "s", "text");
        DefaultFloatingPointIfNeeded environment;
        Levels<WellFormedText> levels({formula, m_parameters, environment}, {program, m_registers});
        levels.get_exp();
        accepted = levels.source().is_accepted();
    }

    // The value, where numbers are all that it takes and no error is met.
    std::optional<double> computed() {
        if (!accepted || !program.lacks.empty() || !program.is_numeric) return {};
        if (!run_numbers(program, m_registers.numbers())) return {};
        return m_registers.numbers()[program.result];
    }

    Program program;
    bool accepted = false;

  private:
    Registers m_registers;
    Parameters m_parameters{m_registers};
};

TEST(Program, ComputesNumbers) {
    const std::pair<const char*, double> formulas[] = {
        {"1+2*3", 7.0},
        {"(1+2)*3", 9.0},
        {"7-2-1", 4.0},
        {"12/3/2", 2.0},
        {"2^3^2", 512.0},
        {"2*3^2", 18.0},
        {"-2^2", 4.0},
        {"2^-2", 0.25},
        {"a*rate", 1.5},
        {" a * ( rate + 1 ) ", 4.5},
        {"2*pi", 2.0 * 3.14159265358979323846},
        {"a+exp", 3.0 + 2.71828},
        {"2*sqrt pi", 2.0 * std::sqrt(3.14159265358979323846)},
        {"sqrt(16)+sqrt 9", 7.0},
        {"SQRT(16)", 4.0},
        {"-(a)", -3.0},
        {"+a", 3.0},
        {"-rate*2", -1.0},
        {"int(2.5)", 2.0},
        {"not(0)", 1.0},
        {"1-a*2", -5.0},
        {"a*2-a*3", -3.0},
        {"a*2+a*3+1*5", 20.0},
        {"a*2-a/3", 5.0},
        {"(a > 2) and (rate < 1)", 1.0},
        {"a >= 3", 1.0},
        {"a <= 2", 0.0},
        {"a <> 3", 0.0},
        {"a = 3", 1.0},
        {"1 or 0", 1.0},
        {"a*2 > 1", 3.0},
        {"((((a))))", 3.0},
        {"5.", 5.0},
        {"2^0", 1.0},
        {"2^3 > 7", 1.0},
        {"1 and 2 > 1 > 0", 1.0},
        {"pi", 3.14159265358979323846},
        {"(int(a))*2", 6.0},
    };
    for (const auto& [formula, value] : formulas) {
        ASSERT_TRUE(Reading(formula).computed().has_value()) << formula;
        EXPECT_EQ(Reading(formula).computed(), value) << formula;
    }
}

TEST(Program, IsLeftToTokensWhereTheTextIsNotWellFormed) {
    for (const char* formula :
         {"",         " ",      "1,2",    "5!",       "1 2",         "a b",    "a(1)",
          "(1",       "1)",     "()",     "1+",       "*1",          "--1",    "-+1",
          "- sin(1)", "sin -1", "sin",    "1 > 2^3",  "2 > 1 and 3", "1#2 3+", "or 1 2",
          "and",      "1 and",  "> 1",    "v+",       "(v",          "v)",     "v,1",
          "v!",       "v v",    "\"open", "-\"sin\"", "1 % 2",       "sin(1,)"}) {
        if (std::string_view(formula) == "1#2 3+") {
            EXPECT_TRUE(Reading(formula).accepted) << "what follows a byte of no token is not read";
        } else {
            EXPECT_FALSE(Reading(formula).accepted) << formula;
        }
    }
    const std::string deep(100, '(');
    EXPECT_FALSE(Reading((deep + "1" + std::string(100, ')')).c_str()).accepted);
}

TEST(Program, KnowsWhatIsNotOfNumbersAlone) {
    for (const char* formula :
         {"s", "\"text\"", "strlen(s)", "preci(a, 1)", "mod(a, 2)", "if(a, 1, 2)", "a like a",
          "1 equal 1", "int(a)^0", "int(a)^2", "like(1)", "sin(1, 2)", "(1, 2)+1"}) {
        EXPECT_TRUE(Reading(formula).accepted) << formula;
        EXPECT_FALSE(Reading(formula).program.is_numeric) << formula;
    }
}

TEST(Program, LeavesErrorsAndWhatIsBeyondTheRange) {
    for (const char* formula :
         {"1/0", "a/(rate-0.5)", "sqrt(0-1)", "ln(0)", "tan(90)", "arcsin(2)", "10^400", "10^308*9",
          "10^308*9-1", "1-10^308*9*1", "1+2*10^308", "a*2-10^308*9", "0-10^308*9"}) {
        EXPECT_TRUE(Reading(formula).program.is_numeric) << formula;
        EXPECT_FALSE(Reading(formula).computed().has_value()) << formula;
    }
}

TEST(Program, KeepsTheType) {
    for (const char* formula : {"int(a)", "+(int(a))", "(int(a))", "+(int a)"}) {
        EXPECT_EQ(Reading(formula).program.type, type_integer) << formula;
    }
    for (const char* formula :
         {"a", "-(int(a))", "int(a)+1", "sqrt(int(a))", "int(a) > 1", "int(a)*a"}) {
        EXPECT_EQ(Reading(formula).program.type, type_number) << formula;
    }
}

TEST(Program, TellsWhatItLacks) {
    for (const char* formula : {"v", "a+v", "v*w+a", "sqrt(v)+(a)", "-v", "v > 1", "(1+v)^2",
                                "v like \"x\"", "strlen(v)", "v+\"x\"", "int(v)^2"}) {
        const Reading reading(formula);
        EXPECT_TRUE(reading.accepted) << formula;
        EXPECT_EQ(reading.program.lacks, "v") << formula;
    }
    for (const char* formula : {"a", "s", "pi", "1+2"}) {
        EXPECT_EQ(Reading(formula).program.lacks, "") << formula;
    }
}

// One for each step, also for those of a formula without a token or without a ")".
TEST(Program, IsNotedWithThePlacesOfItsSteps) {
    const auto places_of = [](const char* formula) {
        Registers registers;
        Parameters parameters{registers};
        TokenReader tokens(parameters);
        if (formula != nullptr) tokens.cut(formula);
        Program program;
        formula::NotingReader source(tokens);
        formula::NotingRecorder recorder(program, registers, source);
        Levels<formula::NotingReader&, formula::NotingRecorder&>(source, recorder).get_exp();
        std::string places;
        for (const auto [begin, end] : recorder.places()) {
            places += std::to_string(begin) + '-' + std::to_string(end) + ' ';
        }
        return places;
    };
    EXPECT_EQ(places_of(nullptr), "0-0 ") << "where nothing is cut";
    EXPECT_EQ(places_of("1+sqrt(4)"), "2-6 1-2 ");
    EXPECT_EQ(places_of(" "), "1-1 ");
    EXPECT_EQ(places_of("(1"), "2-2 ");
    EXPECT_EQ(places_of("1+"), "2-2 1-2 ");
}

TEST(Program, TellsWhetherItCanTouchWhatIsPending) {
    Registers registers;
    const Parameters parameters(registers);
    const auto can_touch = [&](const char* formula) {
        TokenReader tokens(parameters);
        tokens.cut(formula);
        return tokens.can_touch_pending();
    };
    for (const char* formula : {"r2s(1)", "strcat(s, s)", "sin(1, 2)", "(1, 2)", "left(s, 1)",
                                "v+strlen s", "(v w)+\"strlen\"(s)", "like s"}) {
        EXPECT_TRUE(can_touch(formula)) << formula;
    }
    for (const char* formula : {"", "s equal s", "a+v", "sin(1)", "s", "(v w)*-2"}) {
        EXPECT_FALSE(can_touch(formula)) << formula;
    }
}

}  // namespace
