#include "engine/grammar.h"

#include "language/characters.h"
#include "language/operators.h"

namespace morandel {
namespace {

// Six rules, each accepting one construct and leaving the token after it in hand. Where one
// rejects, the rules above it name the operand that is missing.
class Rules {
  public:
    Rules(TokenReader& tokens, Faults& faults, int& expression_status)
        : m_tokens(tokens), m_faults(faults), m_ExpressionStatus(expression_status) {}

    bool VerifyExpression();

  private:
    bool E();
    bool T();
    bool F();
    bool C();
    bool P();
    bool R();
    void get_token();
    [[nodiscard]] bool at(char code) const { return m_tokens.at(code); }
    [[nodiscard]] const Operator* row() const { return operator_of_code(m_tokens.token().code); }
    const Operator* take(Level level);
    const Operator* take_from(const Operator* before);
    bool reject(int status, Error error);
    bool reject(Error error);

    TokenReader& m_tokens;
    Faults& m_faults;
    int& m_ExpressionStatus;
    bool m_ended = false;  // by a literal without its closing quote
};

bool Rules::VerifyExpression() {
    get_token();
    if (m_tokens.type() == NONE || !E() || m_ended) return false;
    if (m_tokens.type() != NONE && !at('!')) return reject(8, Error::missing_operator);
    m_ExpressionStatus = 0;
    return true;
}

// A literal without its closing quote ends the check without a word: to the rules it is the end
// of the formula, and their rejections count no more.
void Rules::get_token() {
    m_tokens.get_token();
    if (!m_tokens.token().m_IsStringLiteral || m_tokens.token().m_QuoteClosed) return;
    m_ended = true;
    m_tokens.end();
}

bool Rules::reject(int status, Error error) {
    if (!m_ended) m_ExpressionStatus = status;
    return reject(error);
}

bool Rules::reject(Error error) {
    if (!m_ended) m_faults.serror(error);
    return false;
}

// Reads over an operator of that level; null where there is none.
const Operator* Rules::take(Level level) {
    if (m_tokens.token().level != level) return nullptr;
    const Operator* operator_in_hand = row();
    get_token();
    return operator_in_hand;
}

// Likewise over a power or a relation, none that stands before another one in the table.
const Operator* Rules::take_from(const Operator* before) {
    if (before != nullptr && row() < before) return nullptr;
    const Operator* power = take(Level::power);
    return power != nullptr ? power : take(Level::relation);
}

// T { (+|-) T }
bool Rules::E() {
    const Operator* before = nullptr;
    do {
        if (!T()) return before != nullptr && reject(3, before->nothing_after);
    } while ((before = take(Level::sum)) != nullptr);
    return true;
}

// F { (*|/) F }
bool Rules::T() {
    const Operator* before = nullptr;
    do {
        if (!F()) return before != nullptr && reject(4, before->nothing_after);
    } while ((before = take(Level::product)) != nullptr);
    return true;
}

// C { (power | relation) C } { ! E }, in the order of the table.
bool Rules::F() {
    const Operator* before = nullptr;
    do {
        if (!C()) return before != nullptr && reject(5, before->nothing_after);
    } while ((before = take_from(before)) != nullptr);
    // Deliberate: what comes of this E does not count; 5!+ is accepted, with status 0.
    while (at('!')) E();
    return true;
}

// P { , P }
bool Rules::C() {
    for (bool after_comma = false;; after_comma = true) {
        if (!P()) return after_comma && reject(6, Error::nothing_after_comma);
        if (!at(',')) return true;
        get_token();
    }
}

// [ sign | function ] R
bool Rules::P() {
    if (m_tokens.token().prefix != 0) get_token();
    return R();
}

// ( E ) | variable | constant | !
bool Rules::R() {
    const TokenType type = m_tokens.type();
    if (at('(')) {
        get_token();
        if (!E()) return false;
        if (!at(')')) return reject(2, Error::missing_close);
    } else if (type != VARIABLE && type != CONSTANT && !at('!')) {
        if (at(')')) return reject(6, Error::missing_open);
        return reject(7, Error::illegal_symbol);
    }
    if (type == VARIABLE && m_tokens.token().text.size() > longest_free_name) {
        return reject(Error::name_too_long);
    }
    get_token();
    if (at('(') && type == VARIABLE) return reject(Error::parenthesis_after_name);
    if (at('(') && type == CONSTANT) return reject(Error::parenthesis_after_constant);
    return true;
}

}  // namespace

bool verify(TokenReader& tokens, Faults& faults, int& expression_status) {
    return Rules(tokens, faults, expression_status).VerifyExpression();
}

}  // namespace morandel
