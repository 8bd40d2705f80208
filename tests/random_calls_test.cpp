// Random sequences of calls on two evaluators of the library and two of its model, which share what
// is pending: seeded, so that MORANDEL_RANDOM_SEED gives the same ones again, and counted, by
// MORANDEL_RANDOM_CALLS. A sequence in which the two differ is shown with what it does not need
// left out.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "tests/pair.h"
#include "tests/random_formulas.h"

namespace {

using morandel::pairs::Evaluators;
using morandel::tests::RandomFormulas;
using morandel::tests::setting;

enum class Kind { load, load_null, load_message, calculate, verify, number, text, count, clear };

struct Step {
    Kind kind;
    std::size_t evaluator;
    int index;         // of a parameter, or their count
    std::string name;  // of a parameter
    double number;
    std::string text;  // of a parameter, or a formula
};

Step random_step(RandomFormulas& random) {
    static constexpr int counts[] = {0, 1, 3, 6, 6, 50, 51, -1};
    Step step{
        Kind::load, random.below(4) == 0 ? 1U : 0U, static_cast<int>(random.below(8)), "", 0.0, ""};
    const auto choice = random.below(32);
    if (choice < 13) {
        step.text = random.formula();
    } else if (choice < 22) {
        step.kind = Kind::calculate;
    } else if (choice < 25) {
        step.kind = Kind::number;
        step.name = random.name();
        step.number = random.number();
    } else if (choice < 27) {
        step.kind = Kind::text;
        step.name = random.name();
        step.text = random.text();
    } else if (choice < 29) {
        step.kind = Kind::verify;
    } else if (choice == 29) {
        step.kind = Kind::count;
        step.index = random.pick(counts);
    } else if (choice == 30) {
        step.kind = random.below(2) == 0 ? Kind::clear : Kind::load_message;
    } else {
        step.kind = random.below(4) == 0 ? Kind::load_null : Kind::calculate;
    }
    return step;
}

std::vector<Step> random_steps(RandomFormulas& random) {
    std::vector<Step> steps;
    for (std::size_t evaluator = 0; evaluator < 2; ++evaluator) {
        steps.push_back({Kind::count, evaluator, 6, "", 0.0, ""});
        for (int index = 1; index <= 6; ++index) {
            const bool usual = index == 3 || index == 4;
            const Kind kind = usual != (random.below(8) == 0) ? Kind::text : Kind::number;
            steps.push_back(
                {kind, evaluator, index, random.name(), random.number(), random.text()});
        }
    }
    for (int i = 0; i < 80; ++i) {
        steps.push_back(random_step(random));
        if (steps.back().kind == Kind::load && random.below(4) != 0) {
            steps.push_back({Kind::calculate, steps.back().evaluator, 0, "", 0.0, ""});
        }
    }
    return steps;
}

void play(const Step& step, Evaluators& pair) {
    switch (step.kind) {
        case Kind::load:
            pair.load(step.text);
            break;
        case Kind::load_null:
            pair.load(nullptr);
            break;
        case Kind::load_message:
            pair.load_own_message();
            break;
        case Kind::calculate:
            pair.calculate();
            break;
        case Kind::verify:
            pair.verify();
            break;
        case Kind::number:
            pair.set_number(step.index, step.name, step.number);
            break;
        case Kind::text:
            pair.set_text(step.index, step.name, step.text);
            break;
        case Kind::count:
            pair.set_count(step.index);
            break;
        case Kind::clear:
            pair.clear();
            break;
    }
}

struct Outcome {
    std::string difference;
    long calls = 0;
    long computed = 0;
};

Outcome play(const std::vector<Step>& steps) {
    constexpr std::size_t large = 100'000;
    Outcome outcome;
    std::array<Evaluators, 2> pairs;
    for (const Step& step : steps) {
        Evaluators& pair = pairs[step.evaluator];
        play(step, pair);
        ++outcome.calls;
        outcome.computed += step.kind == Kind::calculate ? pair.model().GetStatu() : 0;
        outcome.difference = pair.difference().text();
        if (!outcome.difference.empty()) break;
        // Texts that grow and grow are tested elsewhere.
        std::size_t pending = 0;
        for (const std::string& text : pair.model().pending_texts()) pending += text.size();
        if (pending > large) break;
    }
    return outcome;
}

// Without the steps, and the bytes of formulas, that the difference does not need.
void shrink(std::vector<Step>& steps) {
    const auto differ = [&steps] { return !play(steps).difference.empty(); };
    for (bool smaller = true; smaller;) {
        smaller = false;
        for (std::size_t i = steps.size(); i-- > 0;) {
            const std::vector<Step> before = steps;
            steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(i));
            if (differ()) {
                smaller = true;
            } else {
                steps = before;
            }
        }
        for (Step& step : steps) {
            for (std::size_t at = step.text.size(); at-- > 0;) {
                const std::string before = step.text;
                step.text.erase(at, 1);
                if (differ()) {
                    smaller = true;
                } else {
                    step.text = before;
                }
            }
        }
    }
}

std::string readable(const std::string& bytes) {
    std::ostringstream out;
    for (const char c : bytes) {
        if (c >= ' ' && c < 0x7F) {
            out << c;
        } else {
            out << '{' << std::hex << std::uppercase << int{static_cast<unsigned char>(c)} << '}';
        }
    }
    return out.str();
}

std::string words(const std::vector<Step>& steps) {
    static constexpr const char* kinds[] = {"load",      "load null", "load own message",
                                            "calculate", "verify",    "number",
                                            "text",      "count",     "clear"};
    std::ostringstream out;
    for (const Step& step : steps) {
        out << (step.evaluator == 0 ? "first: " : "second: ") << kinds[static_cast<int>(step.kind)];
        switch (step.kind) {
            case Kind::load:
                out << ' ' << readable(step.text);
                break;
            case Kind::number:
                out << ' ' << step.index << ' ' << readable(step.name) << " = "
                    << std::setprecision(17) << step.number;
                break;
            case Kind::text:
                out << ' ' << step.index << ' ' << readable(step.name) << " = \""
                    << readable(step.text) << '"';
                break;
            case Kind::count:
                out << ' ' << step.index;
                break;
            default:
                break;
        }
        out << '\n';
    }
    return out.str();
}

TEST(RandomCalls, AreTheSameOnLibraryAndModel) {
    const auto wanted = static_cast<long>(setting("MORANDEL_RANDOM_CALLS", 200'000));
    const auto seed = static_cast<std::uint32_t>(setting("MORANDEL_RANDOM_SEED", 1));
    RandomFormulas random(seed);
    long calls = 0;
    long computed = 0;
    while (calls < wanted) {
        std::vector<Step> steps = random_steps(random);
        const Outcome outcome = play(steps);
        if (!outcome.difference.empty()) {
            shrink(steps);
            FAIL() << "seed " << seed << ", after " << calls << " calls:\n"
                   << words(steps) << play(steps).difference;
        }
        calls += outcome.calls;
        computed += outcome.computed;
    }
    std::printf("%ld calls, %ld of them evaluations that succeed\n", calls, computed);
    EXPECT_GT(computed, calls / 20);
}

}  // namespace
