// Evaluation by recursive descent: each level computes as it reads, leaves its result in the value
// handed to it and the first token that is not its own in hand.

#include "tests/model/arithmetic.h"
#include "tests/model/express.h"
#include "tests/model/strings.h"
#include "tests/model/words.h"

namespace model {

void Express::get_exp(Value& value) {
    get_token();
    if (m_TokenType == NONE) return serror(no_expression);
    level2(value);
}

// level3 { (+|-) level3 }
void Express::level2(Value& value) {
    level3(value);
    while (at('+') || at('-')) {
        const char code = token().code;
        get_token();
        Value right;
        level3(right);
        atith(code, value, right.number);
    }
}

// level4 { (*|/) level4 }
void Express::level3(Value& value) {
    level4(value);
    while (at('*') || at('/')) {
        const char code = token().code;
        get_token();
        Value right;
        level4(right);
        atith(code, value, right.number);
    }
}

// level5 [ ^ level4 ] [ ! ] { relation level4 }
void Express::level4(Value& value) {
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
    for (const char code : relations_in_order) {
        if (!at(code)) continue;
        get_token();
        Value right;
        level4(right);
        apply_relation(code, value, right);
    }
}

// [ sign | function ] level6
void Express::level5(Value& value) {
    const char prefix = token().prefix;
    if (prefix == 0) return level6(value, prefix);
    get_token();
    m_ExtraArguments.emplace_back();
    level6(value, prefix);
    unary(prefix, value);
    StringFunction(prefix, value);
    m_ExtraArguments.pop_back();
}

// ( level2 { , level2 } ) | primitive
void Express::level6(Value& value, char prefix) {
    if (!at('(')) return primitive(value);
    get_token();
    level2(value);
    if (at(',')) read_further_arguments(value, prefix);
    if (!at(')')) serror(unbalanced_parentheses);
    get_token();
}

void Express::read_further_arguments(Value& value, char prefix) {
    for (std::size_t place = 0; at(','); ++place) {
        get_token();
        if (place == 0 && prefix == 'A') {
            m_StringArgument.text = value.text;
            m_StringArgument.index = m_TempStr.size();
        }
        Value further;
        level2(further);
        if (further.type == type_text) {
            m_TempStr.push_back(further.text);
            m_PushedBytes += further.text.size();
        } else {
            g_NumArray.push_back(further.number);
        }
        if (place < ExtraArguments::kept && !m_ExtraArguments.empty()) {
            m_ExtraArguments.back().values[place] = further.number;
        }
    }
}

// constant
void Express::primitive(Value& value) {
    const bool is_text = token().is_literal || (m_TokenType == CONSTANT && !m_IsNumber);
    if (!is_text && m_TokenType != CONSTANT) return serror(bad_expression);
    const bool is_name = token().token_class == TokenClass::name;
    const Parameter* parameter = is_name ? find_parameter(token().text) : nullptr;
    if (is_text) {
        value.text = parameter != nullptr ? parameter->text : token().text;
        value.type = type_text;
    } else {
        value.number = parameter != nullptr ? parameter->number : token().number;
        value.type = type_number;
    }
    get_token();
}

void Express::unary(char code, Value& value) {
    const Error error = apply_unary(code, value);
    if (error != none) serror(error);
}

// The operators, and the functions that are computed like them: mod, preci, strcase and, for its
// further argument only, strlen.
void Express::atith(char code, Value& left, double right) {
    if (!in_range(left.number) || !in_range(right)) {
        return serror(out_of_range);
    }
    Error error = none;
    switch (code) {
        case 'C':
            apply_case(left, right);
            break;
        case 'L':
            break;
        case 'r':
            error = apply_modulo(left, right);
            break;
        case 'u':
            error = apply_rounding(left, right);
            break;
        default:
            error = apply_operator(code, left, right);
            break;
    }
    if (error != none) return serror(error);
    const bool takes_number = code == 'r' || code == 'u';
    if (takes_number && !g_NumArray.empty()) g_NumArray.pop_back();
}

void Express::StringFunction(char code, Value& value) {
    const ExtraArguments& extra = m_ExtraArguments.back();
    const Function* row = function_of_code(code);
    if (row == nullptr) return;
    // strlen has its result, but its further argument is held to the range as well.
    if (row->carrier == Carrier::arithmetic || code == 'L')
        return atith(code, value, extra.values[0]);
    Call call{value, extra, m_TempStr, g_NumArray, m_StringArgument};
    const Error error = string_function(code, call);
    if (error != none) serror(error);
}

}  // namespace model
