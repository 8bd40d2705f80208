// The grammar check: six rules, each accepting one construct and leaving the token after it in
// hand. The first rejection is recorded and ends the check, the rules above it naming the
// missing operand. The grammar is not the evaluator's: looser here, stricter there.

#include <cstdint>

#include "engine/express.h"
#include "engine/functions.h"

using morandel::CONSTANT;
using morandel::DELIMITER;
using morandel::Error;
using morandel::NONE;
using morandel::Token;
using morandel::TokenClass;
using morandel::TokenType;
using morandel::VARIABLE;

namespace {

// The operators of rule F. Deliberate: each is tried once, in this order, so "a like b and c" is
// accepted and "a and b like c" is not.
struct Operator {
    char code;
    Error nothing_after;
};

constexpr Operator operators_in_order[] = {
    {'^', Error::nothing_after_power},
    {morandel::code_like, Error::nothing_after_like},
    {morandel::code_equal, Error::nothing_after_equal_word},
    {morandel::code_and, Error::nothing_after_and},
    {morandel::code_or, Error::nothing_after_or},
    {morandel::code_ge, Error::nothing_after_not_less},
    {morandel::code_le, Error::nothing_after_not_greater},
    {morandel::code_ne, Error::nothing_after_not_equal},
    {'<', Error::nothing_after_less},
    {'>', Error::nothing_after_greater},
    {'=', Error::nothing_after_equal},
};

constexpr std::size_t longest_variable = 250;  // the message of error 38 says 50

// Whether the tokens are operands and operators in turn, with parentheses in pairs, one sign or
// function before an operand and one power or relation between signs of other kinds. All rules
// accept those. What this refuses is theirs to judge.
class PlainFormula {
  public:
    bool take(const Token& token) {
        if (token.is_literal && !token.quote_closed) return false;
        if (token.token_class == TokenClass::delimiter) {
            return m_operand_due ? open(token) : close_or_join(token.code);
        }
        const bool due = m_operand_due;
        m_operand_due = m_after_prefix = false;
        return due && token.text_length <= longest_variable;
    }

    // At the end token.
    [[nodiscard]] bool is_whole() const { return !m_operand_due && m_depth == 0; }

  private:
    static constexpr int deepest = 63;

    bool open(const Token& token) {
        if (token.code == '(') {
            m_after_prefix = false;
            m_joined_tightly <<= 1;
            return ++m_depth <= deepest;
        }
        const bool first_prefix = token.prefix != 0 && !m_after_prefix;
        m_after_prefix = true;
        return first_prefix;
    }

    bool close_or_join(char code) {
        if (code == ')') {
            m_joined_tightly >>= 1;
            return --m_depth >= 0;
        }
        m_operand_due = true;
        if (code == ',') return true;
        const bool was_tight = (m_joined_tightly & 1) != 0;
        const bool is_tight = code == '^' || morandel::is_relation(code);
        m_joined_tightly = (m_joined_tightly & ~std::uint64_t{1}) | (is_tight ? 1 : 0);
        return is_tight ? !was_tight : code == '+' || code == '-' || code == '*' || code == '/';
    }

    bool m_operand_due = true;
    bool m_after_prefix = false;
    int m_depth = 0;
    // A bit for each open parenthesis, the innermost the lowest: whether a power or relation stands
    // there since the last other sign.
    std::uint64_t m_joined_tightly = 0;
};

}  // namespace

// What VerifyExpression does of a whole formula, for those that need no rules to be seen as well
// formed; false for all others, and nothing done. The constants' kinds are read when variables are
// listed.
bool CExpress::verify_plain() {
    PlainFormula formula;
    const Token* token = m_Tokens.data();
    for (; token->token_class != TokenClass::end; ++token) {
        if (!formula.take(*token)) return false;
    }
    if (!formula.is_whole()) return false;
    m_Token = token;
    m_TokenType = NONE;
    m_ExpressionStatus = 0;
    return true;
}

int CExpress::VerifyExpression() {
    need_tokens();
    m_CheckEnded = false;
    check_next_token();
    if (m_TokenType == NONE || !E() || m_CheckEnded) return 0;
    if (m_TokenType != NONE && !at('!')) {
        reject(8, Error::missing_operator);
        return 0;
    }
    m_ExpressionStatus = 0;
    return 1;
}

// A literal without its closing quote ends the check without a word: to the rules it is the end
// of the formula, and their rejections count no more.
void CExpress::check_next_token() {
    get_token();
    if (!m_Token->is_literal || m_Token->quote_closed) return;
    m_CheckEnded = true;
    m_Token = &m_Tokens.back();
    m_TokenType = NONE;
}

bool CExpress::reject(int status, Error error) {
    if (!m_CheckEnded) m_ExpressionStatus = status;
    return reject(error);
}

bool CExpress::reject(Error error) {
    if (!m_CheckEnded) serror(error);
    return false;
}

// T { (+|-) T }
bool CExpress::E() {
    if (!T()) return false;
    while (at('+') || at('-')) {
        check_next_token();
        if (!T()) return reject(3, Error::nothing_after_sum);
    }
    return true;
}

// F { (*|/) F }
bool CExpress::T() {
    if (!F()) return false;
    while (at('*') || at('/')) {
        check_next_token();
        if (!F()) return reject(4, Error::nothing_after_product);
    }
    return true;
}

// C { operator C } { ! E }
bool CExpress::F() {
    if (!C()) return false;
    if (at('^') || morandel::is_relation(m_Token->code)) {
        for (const Operator& row : operators_in_order) {
            while (at(row.code)) {
                check_next_token();
                if (!C()) return reject(5, row.nothing_after);
            }
        }
    }
    // Deliberate: what comes of this E does not count; 5!+ is accepted, with status 0.
    while (at('!')) E();
    return true;
}

// P { , P }
bool CExpress::C() {
    if (!P()) return false;
    while (at(',')) {
        check_next_token();
        if (!P()) return reject(6, Error::nothing_after_comma);
    }
    return true;
}

// [ sign | function ] R
bool CExpress::P() {
    if (m_Token->prefix != 0) check_next_token();
    return R();
}

// ( E ) | variable | constant | !
bool CExpress::R() {
    if (at('(')) {
        check_next_token();
        if (!E()) return false;
        if (!at(')')) return reject(2, Error::missing_close);
    } else if (m_TokenType != VARIABLE && m_TokenType != CONSTANT && !at('!')) {
        if (at(')')) return reject(6, Error::missing_open);
        return reject(7, Error::illegal_symbol);
    }
    if (m_TokenType == VARIABLE && m_Token->text_length > longest_variable) {
        return reject(Error::name_too_long);
    }
    const TokenType before = m_TokenType;
    check_next_token();
    if (at('(') && before == VARIABLE) return reject(Error::parenthesis_after_name);
    if (at('(') && before == CONSTANT) return reject(Error::parenthesis_after_constant);
    return true;
}
