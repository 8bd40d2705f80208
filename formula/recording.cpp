#include "formula/recording.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "engine/free_variables.h"
#include "engine/machine.h"
#include "engine/recorder.h"
#include "engine/scanner.h"
#include "formula/places.h"
#include "formula/reading.h"
#include "language/functions.h"

namespace morandel::formula {
namespace {

Extent extent_of(const Token& token) { return {token.begin, token.end}; }

// Calls a function with each token and the one before it, until that gives true.
template <class Visit>
void each_token(const std::string& formula, const Visit& visit) {
    DefaultFloatingPointIfNeeded environment;
    Scanner scanner(formula.c_str(), environment);
    Token token;
    Token before;
    for (scanner.read_with_place(token); !visit(token, before); scanner.read_with_place(token)) {
        if (token.token_class == TokenClass::end) return;
        before = token;
    }
}

bool reads_numbers(const Step& step) {
    return step.kind == StepKind::atith || step.kind == StepKind::MUL_Atith;
}

}  // namespace

Recording::Recording(const std::string& formula, const std::vector<std::string>& names, Kinds texts)
    : m_formula(formula), m_names(names), m_texts(texts) {
    const DefaultFloatingPoint environment;
    // Not on the stack, which the grammar check and the levels need.
    const auto reading = std::make_unique<Reading>(formula, names, texts);
    TokenReader& tokens = reading->tokens;

    Verdict verdict;
    int expression_status = 0;
    const bool accepted = verify(tokens, verdict.faults, expression_status);
    const int number = verdict.faults.m_ErrorNumber;
    const bool in_formula = &tokens.token() != &end_of_nothing;
    Fault fault{number, MORANDEL_REASON_NUMBERED, extent_of(tokens.token())};
    if (number < 0 || !in_formula) fault.where = silent_refusal().where;
    if (!accepted) {
        m_refusal = number < 0 ? silent_refusal() : fault;
        return;
    }
    // Deliberate: what follows a factorial is accepted whatever it is, and then fails.
    if (verdict.status == 0) m_fault = fault;

    tokens.seek(0);
    FreeVariables variables;
    variables.list(tokens);
    for (std::size_t i = 0; i < static_cast<std::size_t>(variables.count()); ++i) {
        const VariableNode& node = variables[i];
        m_free_names.push_back({node.name, node.type, find_name(node.name)});
    }

    tokens.seek(0);
    tokens.get_exp(m_program, reading->registers);
    fold_constants(reading->registers);
    keep_constants(reading->registers);
    const Token& last = tokens.token();
    if (last.begin < formula.size()) {
        m_ignored = {last.token_class != TokenClass::end, {last.begin, formula.size()}};
    }
}

// Those operands that no step gives.
void Recording::keep_constants(const Registers& registers) {
    std::vector<bool> is_kept(Registers::first_free + m_formula.size() + 1);
    std::fill_n(is_kept.begin(), Registers::first_free, true);
    const auto keep = [&](Register place) {
        if (is_kept[place]) return;
        is_kept[place] = true;
        m_constants.push_back({place, registers.value(place)});
    };
    for (const Step& step : m_program.steps) {
        if (step.kind == StepKind::serror) continue;
        keep(step.left);
        if (reads_numbers(step)) keep(step.right);
        is_kept[step.result] = true;
    }
    keep(m_program.result);
}

// Steps of constants alone are computed once and for all, where numbers are all there is and
// nothing goes wrong; the others stay to tell.
void Recording::fold_constants(Registers& registers) {
    std::vector<bool> is_constant(Registers::first_free + m_formula.size() + 1, true);
    std::fill_n(is_constant.begin(), Registers::parameters, false);
    std::vector<Step> kept;
    for (std::size_t i = 0; i < m_program.steps.size(); ++i) {
        const Step& step = m_program.steps[i];
        const bool is_of_constants = m_program.is_numeric && is_constant[step.left] &&
                                     (step.kind == StepKind::unary || is_constant[step.right]);
        if (is_of_constants && run_numbers(Program{.steps = {step}}, registers.numbers())) {
            const double number = registers.numbers()[step.result];
            registers.set(step.result, {number, {}, registers.kind(step.result)});
            continue;
        }
        is_constant[step.result] = false;
        kept.push_back(step);
        m_origins.push_back(static_cast<std::uint16_t>(i));
    }
    m_program.steps = std::move(kept);
}

// The constants, where all are numbers.
std::vector<Blocks::Constant> Recording::numbers() const {
    std::vector<Blocks::Constant> constants;
    for (const auto& [place, value] : m_constants) constants.push_back({place, value.number});
    return constants;
}

QuickCode Recording::quick_code() const {
    if (!is_of_numbers() || m_texts.any()) return {};
    return {m_program, numbers(), m_names.size()};
}

std::unique_ptr<const Blocks> Recording::blocks() const {
    return is_of_numbers() ? std::make_unique<const Blocks>(m_program, numbers()) : nullptr;
}

// What the grammar check refuses without a word.
Fault Recording::silent_refusal() const {
    Fault fault;
    each_token(m_formula, [&fault, this](const Token& token, const Token& before) {
        const bool is_first = before.token_class == TokenClass::end;
        if (token.m_IsStringLiteral && !token.m_QuoteClosed) {
            fault = {-1, MORANDEL_REASON_OPEN_LITERAL, extent_of(token)};
        } else if (is_first && token.token_class == TokenClass::end) {
            const bool is_empty = token.begin == m_formula.size();
            fault = {-1,
                     is_empty ? MORANDEL_REASON_EMPTY : MORANDEL_REASON_NO_TOKEN,
                     {token.begin, token.begin + std::size_t{1}}};
        }
        return fault.reason != MORANDEL_REASON_NUMBERED;
    });
    return fault;
}

Extent Recording::find_name(std::string_view name) const {
    Extent where;
    each_token(m_formula, [&](const Token& token, const Token&) {
        const bool found = token.token_class == TokenClass::name && token.text == name;
        if (found) where = extent_of(token);
        return found;
    });
    return where;
}

Extent Recording::token_ending_at(std::size_t end, bool before_it) const {
    Extent where{end, end};
    each_token(m_formula, [&](const Token& token, const Token& before) {
        const bool found = token.end == end;
        if (found) where = extent_of(before_it ? before : token);
        return found;
    });
    return where;
}

Extent Recording::find_token(std::size_t begin,
                             const std::function<bool(Extent)>& is_wanted) const {
    Extent where{begin, begin};
    bool is_found = false;
    each_token(m_formula, [&](const Token& token, const Token&) {
        if (is_found && token.begin > begin) return true;
        if (is_wanted(extent_of(token))) {
            where = extent_of(token);
            is_found = true;
        }
        return false;
    });
    return where;
}

std::vector<Extent> Recording::places_of_steps() const {
    const auto reading = std::make_unique<Reading>(m_formula, m_names, m_texts);
    // What was read last counts for named constants, so that is read again too.
    FreeVariables().list(reading->tokens);
    reading->tokens.seek(0);
    Program program;
    NotingReader source(reading->tokens);
    NotingRecorder recorder(program, reading->registers, source);
    Levels<NotingReader&, NotingRecorder&>(source, recorder).get_exp();
    return recorder.places();
}

// By place of the register: whether it can hold a text, or a number.
std::vector<bool> Recording::known_kinds(bool of_texts) const {
    std::vector<bool> can_hold(Registers::first_free + m_formula.size() + 1, true);
    for (std::size_t i = 0; i < m_names.size(); ++i) can_hold[i] = m_texts[i] == of_texts;
    for (const auto& [place, value] : m_constants) {
        can_hold[place] = (value.type == type_text) == of_texts;
    }
    return can_hold;
}

std::vector<MiscountedCall> Recording::miscounted_calls() const {
    struct Open {
        Token function;  // or what else stands before the parenthesis
        std::size_t arguments = 1;
    };
    std::vector<Open> open;
    std::vector<MiscountedCall> calls;
    each_token(m_formula, [&](const Token& token, const Token& before) {
        if (token.code == '(') open.push_back({before});
        if (token.code == ',' && !open.empty()) ++open.back().arguments;
        if (token.code != ')' || open.empty()) return false;
        const auto [function, arguments] = open.back();
        open.pop_back();
        const FunctionRow* row = function_of_code(function.code);
        if (row == nullptr) return false;
        const auto [fewest, most] = argument_counts(row->kinds);
        if (arguments < fewest) calls.push_back({MORANDEL_REASON_TOO_FEW, extent_of(function)});
        if (arguments > most) calls.push_back({MORANDEL_REASON_TOO_MANY, extent_of(function)});
        return false;
    });
    return calls;
}

std::vector<Extent> Recording::short_calls() const {
    struct Need {
        char code;
        int numbers;
    };
    // Numbers that must be pending, those of the call included.
    static constexpr Need needs[] = {{'l', 2}, {'i', 2}, {'U', 2}};
    std::vector<Extent> calls;
    std::vector<Extent> places;
    const std::vector<bool> can_be_number = known_kinds(false);
    int numbers = 0;
    for (std::size_t i = 0; i < m_program.steps.size(); ++i) {
        const Step& step = m_program.steps[i];
        if (step.kind == StepKind::further_argument && can_be_number[step.left]) ++numbers;
        if (step.kind != StepKind::StringFunction) continue;
        const auto* need = std::ranges::find(needs, step.code, &Need::code);
        if (need != std::end(needs) && numbers < need->numbers) {
            if (places.empty()) places = places_of_steps();
            calls.push_back(places[i]);
        }
    }
    return calls;
}

}  // namespace morandel::formula
