// The checking levels, routine for routine as engine/levels.cpp, with the kind of a value in place
// of the value. What differs: each operator, sign and function opens a step, whose position its
// faults carry, and a string parameter is no operand.

#include "checker/checker.h"
#include "engine/functions.h"

using morandel::CONSTANT;
using morandel::Error;
using morandel::NONE;
using morandel::VARIABLE;

void CExpressionCheck::Checkget_exp(int& kind) {
    get_token();
    if (m_TokenType == NONE) return serror(Error::no_expression);
    Checklevel2(kind);
}

// level3 { (+|-) level3 }
void CExpressionCheck::Checklevel2(int& kind) {
    Checklevel3(kind);
    while (at('+') || at('-')) {
        const char code = m_Token->code;
        read_operator();
        int right = kind_open;
        Checklevel3(right);
        Checkatith(code, kind, right);
    }
}

// level4 { (*|/) level4 }
void CExpressionCheck::Checklevel3(int& kind) {
    Checklevel4(kind);
    while (at('*') || at('/')) {
        const char code = m_Token->code;
        read_operator();
        int right = kind_open;
        Checklevel4(right);
        Checkatith(code, kind, right);
    }
}

// level5 [ ^ level4 ] [ ! ] { relation level4 }
void CExpressionCheck::Checklevel4(int& kind) {
    Checklevel5(kind);
    if (at('^')) {
        read_operator();
        int right = kind_open;
        Checklevel4(right);
        Checkatith('^', kind, right);
    }
    if (at('!')) {
        read_operator();
        Checkatith('!', kind, kind_number);
    }
    if (!morandel::is_relation(m_Token->code)) return;
    for (const char code : morandel::relations_in_order) {
        if (!at(code)) continue;
        read_operator();
        int right = kind_open;
        Checklevel4(right);
        Check_Mul_atith(code, kind, right);
    }
}

// [ sign | function ] level6
void CExpressionCheck::Checklevel5(int& kind) {
    const char prefix = m_Token->prefix;
    if (prefix == 0) return Checklevel6(kind);
    ++m_tokenCount;
    open_step(tell(), m_Token->end);
    get_token();
    Checklevel6(kind);
    Checkunary(prefix, kind);
    CheckStringFunction(prefix, kind);
}

// ( level2 { , level2 } ) | primitive
void CExpressionCheck::Checklevel6(int& kind) {
    if (!at('(')) return Checkprimitive(kind);
    ++m_tokenCount;
    m_commaMarks.reset();
    get_token();
    Checklevel2(kind);
    if (at(',')) read_further_arguments();
    if (!at(')')) serror(Error::unbalanced_parentheses);
    get_token();
}

void CExpressionCheck::read_further_arguments() {
    for (std::size_t place = 0; at(','); ++place) {
        ++m_tokenCount;
        get_token();
        int kind = kind_open;
        Checklevel2(kind);
        m_commaMarks.set(place);
        m_argMarks.push_back(1);
        m_argKinds.push_back(static_cast<std::uint32_t>(kind));
    }
}

// constant | variable
void CExpressionCheck::Checkprimitive(int& kind) {
    ++m_tokenCount;
    if (m_Token->is_literal && m_TokenType == CONSTANT) {
        kind = kind_text;
    } else if (!m_Token->is_literal && m_TokenType == CONSTANT && m_IsNumber) {
        kind = kind_number;
    } else if (!m_Token->is_literal && m_TokenType == VARIABLE) {
        kind = kind_variable;
    } else {
        return serror(Error::bad_expression);
    }
    get_token();
}

// An operator in hand opens a step with the token after it.
void CExpressionCheck::read_operator() {
    ++m_tokenCount;
    get_token();
    open_step(tell(), m_Token->end);
}
