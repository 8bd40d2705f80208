// The checking levels, routine for routine as levels.cpp. Each operator, sign and function opens a
// step, whose position its faults carry, and a string parameter is no operand.

#include "tests/model/checker.h"
#include "tests/model/words.h"

namespace model {

void Checker::get_exp(int& kind) {
    get_token();
    if (m_TokenType == NONE) return serror(no_expression);
    level2(kind);
}

// level3 { (+|-) level3 }
void Checker::level2(int& kind) {
    level3(kind);
    while (at('+') || at('-')) {
        const char code = token().code;
        read_operator();
        int right = kind_open;
        level3(right);
        check_operator(code, kind, right);
    }
}

// level4 { (*|/) level4 }
void Checker::level3(int& kind) {
    level4(kind);
    while (at('*') || at('/')) {
        const char code = token().code;
        read_operator();
        int right = kind_open;
        level4(right);
        check_operator(code, kind, right);
    }
}

// level5 [ ^ level4 ] [ ! ] { relation level4 }
void Checker::level4(int& kind) {
    level5(kind);
    if (at('^')) {
        read_operator();
        int right = kind_open;
        level4(right);
        check_operator('^', kind, right);
    }
    if (at('!')) {
        read_operator();
        check_operator('!', kind, kind_number);
    }
    for (const char code : relations_in_order) {
        if (!at(code)) continue;
        read_operator();
        int right = kind_open;
        level4(right);
        check_operator(code, kind, right);
    }
}

// [ sign | function ] level6
void Checker::level5(int& kind) {
    const char prefix = token().prefix;
    if (prefix == 0) return level6(kind);
    ++m_tokenCount;
    open_step();
    get_token();
    level6(kind);
    check_prefix(prefix, kind);
}

// ( level2 { , level2 } ) | primitive
void Checker::level6(int& kind) {
    if (!at('(')) return primitive(kind);
    ++m_tokenCount;
    m_commaMarks.reset();
    get_token();
    level2(kind);
    if (at(',')) read_further_arguments();
    if (!at(')')) serror(unbalanced_parentheses);
    get_token();
}

void Checker::read_further_arguments() {
    for (std::size_t place = 0; at(','); ++place) {
        ++m_tokenCount;
        get_token();
        int kind = kind_open;
        level2(kind);
        m_commaMarks.set(place);
        m_argMarks.push_back(1);
        m_argKinds.push_back(static_cast<unsigned>(kind));
    }
}

// constant | variable
void Checker::primitive(int& kind) {
    ++m_tokenCount;
    if (token().is_literal && m_TokenType == CONSTANT) {
        kind = kind_text;
    } else if (!token().is_literal && m_TokenType == CONSTANT && m_IsNumber) {
        kind = kind_number;
    } else if (!token().is_literal && m_TokenType == VARIABLE) {
        kind = kind_variable;
    } else {
        return serror(bad_expression);
    }
    get_token();
}

// An operator in hand opens a step with the token after it.
void Checker::read_operator() {
    ++m_tokenCount;
    get_token();
    open_step();
}

}  // namespace model
