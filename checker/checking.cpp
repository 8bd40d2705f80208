#include "checker/checking.h"

namespace morandel {

void Checking::start() {
    m_faulty = false;
    m_face.m_step = -1;
    m_face.m_depth = 0;
    m_argument_marks.clear();
    m_face.m_resultKind = kind_open;
}

OperandKind Checking::operand() const {
    const bool is_literal = token().m_IsStringLiteral;
    if (!token().is_constant() || (!is_literal && m_tokens.last_read() != LastRead::number)) {
        return OperandKind::none;
    }
    return is_literal ? OperandKind::text : OperandKind::number;
}

int Checking::may_miss_expression(Checking& /*this*/) {
    serror(Error::no_expression);
    return kind_open;
}

// A name without a value is an operand of any kind.
int Checking::may_miss_operand(Checking& /*this*/) {
    ++m_face.m_tokenCount;
    if (token().is(TokenClass::name)) {
        get_token();
        return kind_variable;
    }
    serror(Error::bad_expression);
    return kind_open;
}

// Its step opens at the token after it.
void Checking::take_operator() {
    ++m_face.m_tokenCount;
    get_token();
    open_step();
}

int Checking::open() {
    ++m_face.m_tokenCount;
    m_comma_marks.reset();
    return 0;
}

char Checking::begin_call(char code) {
    ++m_face.m_tokenCount;
    open_step();
    return code;
}

void Checking::further_argument(std::size_t place, int kind) {
    ++m_face.m_tokenCount;
    m_comma_marks.set(place);
    m_argument_marks.push_back(1);
    m_face.m_argKinds.push_back(static_cast<std::uint32_t>(kind));
}

int Checking::end_call(int kind, char code) {
    const FunctionRow* row = function_of_code(code);
    return row != nullptr ? CheckStringFunction(*row, kind) : Checkunary(code, kind);
}

int Checking::CountCommaCheck() {
    const auto step = static_cast<std::size_t>(m_face.m_step);
    m_face.evaluator().tokens();  // which may not have been cut yet
    const bool is_open = m_face.m_step >= 0 && step < m_positions.size();
    m_tokens.seek(is_open ? m_positions[step].next_token : std::uint16_t{0});
    get_token();  // the "(" of the list

    int commas = 0;
    int depth = 0;
    while (!token().is(TokenClass::end)) {
        get_token();
        if (m_tokens.at(')') && depth-- == 0) break;
        if (m_tokens.at('(')) ++depth;
        if (m_tokens.at(',') && depth == 0) ++commas;
    }
    get_token();
    return commas;
}

int Checking::GetCommaNum() const {
    return m_face.m_depth == 2 ? GetLocalNumber() : static_cast<int>(m_argument_marks.size());
}

void Checking::InitStep() {
    --m_face.m_step;
    --m_face.m_depth;
}

void Checking::forget_arguments(int count) {
    for (int i = 0; i < count; ++i) {
        if (!m_argument_marks.empty()) m_argument_marks.pop_back();
        if (!m_face.m_argKinds.empty()) m_face.m_argKinds.pop_back();
    }
}

// At the token in hand.
void Checking::open_step() {
    ++m_face.m_step;
    ++m_face.m_depth;
    const auto step = static_cast<std::size_t>(m_face.m_step);
    if (step >= m_positions.size()) m_positions.resize(step + 1);
    m_positions[step] = {m_tokens.tell(), token().end};
}

void Checking::record(std::string_view name, int type, int index) {
    m_faulty = true;
    const auto step = static_cast<std::size_t>(m_face.m_step);
    m_face.m_current = {type, m_positions[step].position, index, std::string(name)};
    m_face.m_errors.push_back(m_face.m_current);
}

}  // namespace morandel
