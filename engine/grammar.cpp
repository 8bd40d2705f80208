// The grammar check. Its grammar is not the evaluation's: looser here, stricter there.

#include <optional>

#include "engine/token_reader.h"
#include "language/characters.h"
#include "language/operators.h"

namespace morandel {
namespace {

// Six rules, each accepting one construct and leaving the token after it in hand. Where one
// rejects, the rules above it name the operand that is missing.
struct Rules {
    TokenReader& m_tokens;
    Faults& m_faults;
    int& m_ExpressionStatus;
    bool m_ended = false;  // by a literal without its closing quote

    bool VerifyExpression() {
        get_token();
        if (at(TokenClass::end) || !E() || m_ended) return false;
        if (!at(TokenClass::end) && !at('!')) return reject(Error::missing_operator, 8);
        m_ExpressionStatus = 0;
        return true;
    }

    // T { (+|-) T }
    bool E() {
        const Operator* before = nullptr;
        do {
            if (!T()) return before != nullptr && reject(before->nothing_after, 3);
        } while ((before = take(Level::sum)) != nullptr);
        return true;
    }

    // F { (*|/) F }
    bool T() {
        const Operator* before = nullptr;
        do {
            if (!F()) return before != nullptr && reject(before->nothing_after, 4);
        } while ((before = take(Level::product)) != nullptr);
        return true;
    }

    // C { (power | relation) C } { ! E }, in the order of the table.
    bool F() {
        const Operator* before = nullptr;
        do {
            if (!C()) return before != nullptr && reject(before->nothing_after, 5);
        } while ((before = take_from(before)) != nullptr);
        // Deliberate: what comes of this E does not count; 5!+ is accepted, with status 0.
        while (at('!')) E();
        return true;
    }

    // P { , P }
    bool C() {
        for (bool after_comma = false;; after_comma = true) {
            if (!P()) return after_comma && reject(Error::nothing_after_comma, 6);
            if (!at(',')) return true;
            get_token();
        }
    }

    // [ sign | function ] R
    bool P() {
        if (m_tokens.token().prefix != 0) get_token();
        return R();
    }

    // ( E ) | variable | constant | !
    bool R() {
        const Token& first = m_tokens.token();
        const bool is_name = first.is(TokenClass::name);
        if (at('(')) {
            get_token();
            if (!E()) return false;
            if (!at(')')) return reject(Error::missing_close, 2);
        } else if (!is_name && !first.is_constant() && !at('!')) {
            return at(')') ? reject(Error::missing_open, 6) : reject(Error::illegal_symbol, 7);
        }
        if (is_name && first.text.size() > longest_free_name) return reject(Error::name_too_long);
        get_token();
        if (at('(') && is_name) return reject(Error::parenthesis_after_name);
        if (at('(') && first.is_constant()) return reject(Error::parenthesis_after_constant);
        return true;
    }

    // A literal without its closing quote ends the check without a word: to the rules it is the end
    // of the formula, and their rejections count no more.
    void get_token() {
        m_tokens.get_token();
        if (!m_tokens.token().m_IsStringLiteral || m_tokens.token().m_QuoteClosed) return;
        m_ended = true;
        m_tokens.end();
    }
    [[nodiscard]] bool at(auto kind) const { return m_tokens.at(kind); }
    [[nodiscard]] const Operator* row() const { return operator_of_code(m_tokens.token().code); }

    // Reads over an operator of that level; null where there is none.
    const Operator* take(Level level) {
        if (m_tokens.token().level != level) return nullptr;
        const Operator* operator_in_hand = row();
        get_token();
        return operator_in_hand;
    }
    // Likewise over a power or a relation, none that stands before another one in the table.
    const Operator* take_from(const Operator* before) {
        if (before != nullptr && row() < before) return nullptr;
        const Operator* power = take(Level::power);
        return power != nullptr ? power : take(Level::relation);
    }

    // Where no status is told, the one before stays.
    bool reject(Error error, std::optional<int> status = {}) {
        if (m_ended) return false;
        m_ExpressionStatus = status.value_or(m_ExpressionStatus);
        m_faults.serror(error);
        return false;
    }
};

}  // namespace

bool verify(TokenReader& tokens, Faults& faults, int& expression_status) {
    return Rules{tokens, faults, expression_status}.VerifyExpression();
}

}  // namespace morandel
