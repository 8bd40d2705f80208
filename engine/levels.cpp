// Evaluation by recursive descent: each level computes as it reads, leaves its result in the
// value handed to it and the first token that is not its own in m_Token.

#include "engine/arithmetic.h"
#include "engine/express.h"
#include "engine/functions.h"

using morandel::CONSTANT;
using morandel::Error;
using morandel::ExtraArguments;
using morandel::g_NumArray;
using morandel::NONE;
using morandel::type_number;
using morandel::type_text;

void CExpress::get_exp(Value& value) {
    get_token();
    if (m_TokenType == NONE) return serror(Error::no_expression);
    level2(value);
}

// level3 { (+|-) level3 }
void CExpress::level2(Value& value) {
    level3(value);
    while (at('+') || at('-')) {
        const char code = m_Token->code;
        get_token();
        Value right;
        level3(right);
        atith(code, value, right.number);
    }
}

// level4 { (*|/) level4 }
void CExpress::level3(Value& value) {
    level4(value);
    while (at('*') || at('/')) {
        const char code = m_Token->code;
        get_token();
        Value right;
        level4(right);
        atith(code, value, right.number);
    }
}

// level5 [ ^ level4 ] [ ! ] { relation level4 }
void CExpress::level4(Value& value) {
    level5(value);
    if (at('^')) {
        get_token();
        Value right;
        level4(right);
        atith('^', value, right.number);
    }
    if (at('!')) {
        get_token();
        atith('!', value, 0.0);
    }
    if (!morandel::is_relation(m_Token->code)) return;
    for (const char code : morandel::relations_in_order) {
        if (!at(code)) continue;
        get_token();
        Value right;
        level4(right);
        MUL_Atith(code, value, right);
    }
}

// [ sign | function ] level6
void CExpress::level5(Value& value) {
    const char prefix = m_Token->prefix;
    if (prefix == 0) return level6(value, prefix);
    get_token();
    m_ExtraArguments.emplace_back();
    level6(value, prefix);
    unary(prefix, value);
    StringFunction(prefix, value);
    m_ExtraArguments.pop_back();
}

// ( argument { , argument } ) | primitive
void CExpress::level6(Value& value, char prefix) {
    if (!at('(')) return primitive(value);
    get_token();
    argument(value);
    if (at(',')) read_further_arguments(value, prefix);
    if (!at(')')) serror(Error::unbalanced_parentheses);
    get_token();
}

void CExpress::read_further_arguments(Value& value, char prefix) {
    for (std::size_t place = 0; at(','); ++place) {
        get_token();
        if (place == 0 && prefix == 'A') {
            m_StringArgument.text = value.text;
            m_StringArgument.index = m_TempStr.size();
        }
        Value further;
        argument(further);
        if (further.type == type_text) {
            m_TempStr.push(further.text);
            m_PushedBytes += further.text.size();
        } else {
            g_NumArray.push(further.number);
        }
        if (place < ExtraArguments::kept && !m_ExtraArguments.empty()) {
            m_ExtraArguments.back().values[place] = further.number;
        }
    }
}

// level2. In an argument that is one operand, as most are, no level finds anything else to do.
void CExpress::argument(Value& value) {
    if (m_Token->code == 0 && (m_Prog->code == ',' || m_Prog->code == ')')) return primitive(value);
    level2(value);
}

// constant
void CExpress::primitive(Value& value) {
    const bool is_text = m_Token->is_literal || (m_TokenType == CONSTANT && !m_IsNumber);
    if (!is_text && m_TokenType != CONSTANT) return serror(Error::bad_expression);
    const bool is_parameter = m_Token->token_class == morandel::TokenClass::name;
    const morandel::Parameter* parameter =
        is_parameter ? &m_Para[static_cast<std::size_t>(m_Token->slot)] : nullptr;
    if (is_text) {
        value.text = is_parameter ? std::string_view(parameter->text) : m_Token->text();
        value.type = type_text;
    } else {
        value.number = is_parameter ? parameter->number : m_Token->number;
        value.type = type_number;
    }
    get_token();
}

void CExpress::unary(char code, Value& value) {
    const Error error = morandel::apply_unary(code, value);
    if (error != Error::none) serror(error);
}

// The operators, and the functions that are computed like them: mod, preci, strcase and, for its
// further argument only, strlen.
void CExpress::atith(char code, Value& left, double right) {
    if (!morandel::in_range(left.number) || !morandel::in_range(right)) {
        return serror(Error::out_of_range);
    }
    Error error = Error::none;
    switch (code) {
        case 'C':
            morandel::apply_case(left, right, m_Texts);
            break;
        case 'L':
            break;
        case 'r':
            error = morandel::apply_modulo(left, right);
            break;
        case 'u':
            error = morandel::apply_rounding(left, right);
            break;
        default:
            error = morandel::apply_operator(code, left, right);
            break;
    }
    if (error != Error::none) return serror(error);
    if (code == 'r' || code == 'u') g_NumArray.pop(1);
}

void CExpress::MUL_Atith(char code, Value& left, const Value& right) {
    morandel::apply_relation(code, left, right);
}
