// The grammar check: six rules, each accepting one construct and leaving the token after it in
// hand. The first rejection is recorded and ends the check, the rules above it naming the missing
// operand.

#include "tests/model/express.h"
#include "tests/model/words.h"

namespace model {
namespace {

// The operators of rule F, each tried once, in this order.
struct Operator {
    char code;
    Error nothing_after;
};

constexpr Operator operators_in_order[] = {
    {'^', nothing_after_power},
    {code_like, nothing_after_like},
    {code_equal, nothing_after_equal_word},
    {code_and, nothing_after_and},
    {code_or, nothing_after_or},
    {code_ge, nothing_after_not_less},
    {code_le, nothing_after_not_greater},
    {code_ne, nothing_after_not_equal},
    {'<', nothing_after_less},
    {'>', nothing_after_greater},
    {'=', nothing_after_equal},
};

constexpr std::size_t longest_variable = 250;

}  // namespace

int Express::VerifyExpression() {
    m_CheckEnded = false;
    check_next_token();
    if (m_TokenType == NONE || !E() || m_CheckEnded) return 0;
    if (m_TokenType != NONE && !at('!')) {
        reject(8, missing_operator);
        return 0;
    }
    m_ExpressionStatus = 0;
    return 1;
}

// A literal without its closing quote ends the check without a word: to the rules it is the end
// of the formula, and their rejections count no more.
void Express::check_next_token() {
    get_token();
    if (!token().is_literal || token().quote_closed) return;
    m_CheckEnded = true;
    m_Current = m_Tokens.size() - 1;
    m_TokenType = NONE;
}

bool Express::reject(int status, Error error) {
    if (!m_CheckEnded) m_ExpressionStatus = status;
    return reject(error);
}

bool Express::reject(Error error) {
    if (!m_CheckEnded) serror(error);
    return false;
}

// T { (+|-) T }
bool Express::E() {
    if (!T()) return false;
    while (at('+') || at('-')) {
        check_next_token();
        if (!T()) return reject(3, nothing_after_sum);
    }
    return true;
}

// F { (*|/) F }
bool Express::T() {
    if (!F()) return false;
    while (at('*') || at('/')) {
        check_next_token();
        if (!F()) return reject(4, nothing_after_product);
    }
    return true;
}

// C { operator C } { ! E }
bool Express::F() {
    if (!C()) return false;
    for (const Operator& row : operators_in_order) {
        while (at(row.code)) {
            check_next_token();
            if (!C()) return reject(5, row.nothing_after);
        }
    }
    // What comes of this E does not count; 5!+ is accepted, with status 0.
    while (at('!')) E();
    return true;
}

// P { , P }
bool Express::C() {
    if (!P()) return false;
    while (at(',')) {
        check_next_token();
        if (!P()) return reject(6, nothing_after_comma);
    }
    return true;
}

// [ sign | function ] R
bool Express::P() {
    if (token().prefix != 0) check_next_token();
    return R();
}

// ( E ) | variable | constant | !
bool Express::R() {
    if (at('(')) {
        check_next_token();
        if (!E()) return false;
        if (!at(')')) return reject(2, missing_close);
    } else if (m_TokenType != VARIABLE && m_TokenType != CONSTANT && !at('!')) {
        if (at(')')) return reject(6, missing_open);
        return reject(7, illegal_symbol);
    }
    if (m_TokenType == VARIABLE && token().text.size() > longest_variable) {
        return reject(name_too_long);
    }
    const TokenType before = m_TokenType;
    check_next_token();
    if (at('(') && before == VARIABLE) return reject(parenthesis_after_name);
    if (at('(') && before == CONSTANT) return reject(parenthesis_after_constant);
    return true;
}

}  // namespace model
