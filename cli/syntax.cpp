#include "cli/syntax.h"

#include <array>

#include "cli/encoding.h"
#include "cli/suggestion.h"

namespace morandel::cli {
namespace {

std::string shown(std::string_view gbk) {
    try {
        return to_utf8(gbk);
    } catch (const EncodingError&) {
        return "?";
    }
}

// The grammar check once more, rule by rule, to learn where it stops: the first fault is the
// innermost, which the rules above it only report in other words.
class Grammar {
  public:
    explicit Grammar(std::string_view formula) : m_tokens(tokens_of(formula)) {}

    // What a name cannot have makes other tokens of what follows, and any fault is due to it.
    std::optional<Remark> run() {
        find_fault();
        if (m_fault) find_unnameable();
        return m_fault;
    }

  private:
    [[nodiscard]] const FormulaToken& current() const { return m_tokens[m_at]; }
    [[nodiscard]] bool is_at_end() const {
        return current().kind == TokenKind::end || current().kind == TokenKind::ignored;
    }
    void next() {
        if (!is_at_end()) ++m_at;
    }

    bool fail(const FormulaToken& token, Message message) {
        if (!m_fault) m_fault = Remark{token.position, token.text.size(), std::move(message)};
        return false;
    }

    void find_fault() {
        if (current().kind == TokenKind::end) return;
        if (current().kind == TokenKind::ignored) {
            fail_at_ignored();
        } else if (sum() && !is_at_end() && !current().is("!")) {
            leave_over();
        }
    }

    void find_unnameable() {
        for (const FormulaToken& token : m_tokens) {
            if (token.kind != TokenKind::name) continue;
            const std::string_view character = unnameable_in(token.text);
            if (character.empty()) continue;
            const auto before = static_cast<std::size_t>(character.data() - token.text.data());
            m_fault = Remark{token.position + before, character.size(),
                             say("a name cannot have '{0}'", shown(character))};
            return;
        }
    }

    bool fail_at_ignored() {
        FormulaToken first = current();
        first.text = first.text.substr(0, character_size(first.text[0]));
        const Message control = control_name(first.text[0]);
        return fail(first, control.empty()
                               ? say("nothing in a formula begins with '{0}'", shown(first.text))
                               : say("nothing in a formula begins with {0}", control));
    }

    bool sum() {
        if (current().kind == TokenKind::unclosed) {
            return fail(current(), say("a text has no closing quote"));
        }
        return chain({"+", "-"}, &Grammar::product);
    }
    bool product() { return chain({"*", "/"}, &Grammar::relations); }

    bool chain(std::array<std::string_view, 2> symbols, bool (Grammar::*operand)()) {
        if (!(this->*operand)()) return false;
        while (current().is(symbols[0]) || current().is(symbols[1])) {
            next();
            if (!(this->*operand)()) return false;
        }
        return true;
    }

    bool relations() {
        static constexpr std::array<std::string_view, 11> in_order = {
            "^", "like", "equal", "and", "or", ">=", "<=", "<>", "<", ">", "="};
        if (!list()) return false;
        for (const std::string_view symbol : in_order) {
            while (current().is(symbol)) {
                next();
                if (!list()) return false;
            }
        }
        while (current().is("!")) {
            // What follows a factorial is not checked.
            const std::size_t before = m_at;
            const bool had_fault = m_fault.has_value();
            sum();
            if (!had_fault) m_fault.reset();
            if (m_at == before) break;
        }
        return true;
    }

    bool list() {
        if (!prefixed()) return false;
        while (current().is(",")) {
            next();
            if (!prefixed()) return false;
        }
        return true;
    }

    // Where an operand is due, three of the words count as functions too.
    bool prefixed() {
        if (current().kind == TokenKind::function || current().is("+") || current().is("-") ||
            current().is("like") || current().is("equal") || current().is("or")) {
            next();
        }
        return operand();
    }

    bool operand() {
        const FormulaToken token = current();
        if (token.is("(")) {
            const bool is_call = m_at > 0 && m_tokens[m_at - 1].kind == TokenKind::function;
            next();
            if (!sum()) return false;
            if (!current().is(")")) return fail_unclosed(token, is_call);
            next();
            return true;
        }
        const bool is_name = token.kind == TokenKind::name;
        const bool is_constant = token.kind == TokenKind::number || token.kind == TokenKind::text ||
                                 token.kind == TokenKind::constant ||
                                 token.kind == TokenKind::unclosed;
        if (!is_name && !is_constant && !token.is("!")) return fail_without_operand();
        constexpr std::size_t longest_name = 250;
        if (is_name && token.text.size() > longest_name) {
            return fail(token, say("a name has at most 250 bytes"));
        }
        next();
        if (is_name && current().is("(")) return fail(token, no_such_function(token.text));
        if (is_constant && current().is("(")) {
            return fail(current(), say("an operator is missing before '{0}'", "("));
        }
        return true;
    }

    bool fail_unclosed(const FormulaToken& open, bool is_call) {
        if (current().kind == TokenKind::end) return fail(open, say("this '(' is not closed"));
        return leave_over(is_call);
    }

    bool fail_quoted(const FormulaToken& token) {
        return fail(token,
                    say("{0} is read as the function or operator of that name, even in quotes",
                        shown(token.text)));
    }

    // An operand is due, and something else stands there or nothing.
    bool fail_without_operand() {
        const FormulaToken& token = current();
        if (token.kind == TokenKind::ignored) return fail_at_ignored();
        if (m_at == 0 || (token.kind != TokenKind::end && !token.is(")") && !token.is(","))) {
            if (token.is_quoted_word) return fail_quoted(token);
            if (token.is(")")) return fail(token, say("')' has no '(' before it"));
            if (token.kind == TokenKind::function) {
                return fail(token, say("{0} needs parentheses around it here", shown(token.text)));
            }
            return fail(token, say("a value is due here, not '{0}'", shown(token.text)));
        }
        const FormulaToken& before = m_tokens[m_at - 1];
        if (before.is_quoted_word) return fail_quoted(before);
        if (before.is("(") && token.is(")")) return fail(token, say("nothing stands in '()'"));
        return fail(before, say("nothing stands after '{0}'", shown(before.text)));
    }

    // A whole formula, or what stands in a pair of parentheses, has ended before this token.
    bool leave_over(bool is_call = false) {
        const FormulaToken& token = current();
        if (token.kind == TokenKind::ignored) return fail_at_ignored();
        if (token.is(")")) return fail(token, say("')' has no '(' before it"));
        if (token.is("%")) return fail(token, say("'%' is no operator; a remainder is mod(x, y)"));
        if (is_exponent(token)) {
            return fail(token,
                        say("a number has no exponent in a formula; write 1.5*10^6 for 1.5e6"));
        }
        if (token.kind == TokenKind::word && !token.is_quoted_word) {
            return fail(token,
                        say("'{0}' cannot follow here; put what belongs together in parentheses",
                            shown(token.text)));
        }
        if (token.kind == TokenKind::symbol && !token.is("(")) {
            return fail(token, say("'{0}' cannot stand here", shown(token.text)));
        }
        if (is_call) {
            return fail(token,
                        say("a comma or an operator is missing before '{0}'", shown(token.text)));
        }
        return fail(token, say("an operator is missing before '{0}'", shown(token.text)));
    }

    // What is left of 1.5e6 or 1e-3.
    [[nodiscard]] bool is_exponent(const FormulaToken& token) const {
        if (m_at == 0 || token.kind != TokenKind::name) return false;
        const FormulaToken& before = m_tokens[m_at - 1];
        return before.kind == TokenKind::number && before.end() == token.position &&
               (token.text[0] == 'e' || token.text[0] == 'E') &&
               token.text.find_first_not_of("0123456789", 1) == std::string_view::npos;
    }

    std::vector<FormulaToken> m_tokens;
    std::size_t m_at = 0;
    std::optional<Remark> m_fault;
};

}  // namespace

std::optional<Remark> find_syntax_fault(std::string_view formula) { return Grammar(formula).run(); }

Message control_name(char character) {
    const auto code = static_cast<unsigned char>(character);
    if (code == '\t') return say("a tab");
    if (code == '\n' || code == '\r') return say("a line end");
    if (code >= 0x20 && code != 0x7F) return {};
    constexpr std::string_view digits = "0123456789ABCDEF";
    return say("the control character 0x{0}", std::string{digits[code >> 4U], digits[code & 0xFU]});
}

// A relation without blanks is part of a name.
std::string_view joined_relation(std::string_view name) {
    const std::size_t begin = name.find_first_of("<>=");
    if (begin == std::string_view::npos || name.size() == 1) return {};
    return name.substr(begin, name.find_first_not_of("<>=", begin) - begin);
}

Message name_without_value(std::string_view name, std::span<const std::string> names) {
    const std::string text = shown(name);
    const std::string_view relation = joined_relation(name);
    if (const std::string_view character = unnameable_in(name); !character.empty()) {
        return say("{0} has no value; a name cannot have '{1}'", text, shown(character));
    }
    if (name.find('\t') != std::string_view::npos) {
        return say("{0} has no value; the tab in it is part of the name", text);
    }
    const std::size_t percent = name.find('%');
    if (name.size() > 1 && percent < name.find_first_of("<>=")) {
        return say("{0} has no value; '%' is no operator, a remainder is mod(x, y)", text);
    }
    if (!relation.empty()) {
        return say("{0} has no value; blanks are needed around '{1}'", text, relation);
    }
    std::vector<std::string> known(names.begin(), names.end());
    for (const Function& function : functions()) known.emplace_back(function.name);
    known.insert(known.end(), {"pi", "exp"});
    const std::string close = closest(name, known);
    if (close.empty()) return say("{0} has no value", text);
    return say("{0} has no value; did you mean {1}?", text, shown(close));
}

Message no_such_function(std::string_view name) {
    std::vector<std::string> known;
    for (const Function& function : functions()) known.emplace_back(function.name);
    const std::string close = closest(name, known);
    if (close.empty()) return say("{0} is not a function", shown(name));
    return say("{0} is not a function; did you mean {1}?", shown(name), close);
}

}  // namespace morandel::cli
