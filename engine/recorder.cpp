#include "engine/recorder.h"

#include <algorithm>

namespace morandel {

Register Recorder::lacking(const Token& token) {
    if (m_program.lacks.empty()) m_program.lacks = token.text;
    return serror(Error::bad_expression);
}

Register Recorder::serror(Error error) {
    m_program.is_numeric = false;
    m_program.steps.push_back({StepKind::serror, 0, static_cast<Register>(error), 0, 0});
    return nothing;
}

void Recorder::first_argument(Register value) {
    leave_numbers();
    m_program.steps.push_back({StepKind::first_argument, 0, value, 0, 0});
}

void Recorder::further_argument(std::size_t place, Register value) {
    leave_numbers();
    if (m_call.set == 0 && is_routine(m_call.code)) m_call.set = m_program.argument_sets++;
    const auto code = static_cast<char>(std::min(place, ExtraArguments::kept));
    m_program.steps.push_back({StepKind::further_argument, code, value, m_call.set, 0});
}

Register Recorder::end_routine(char code, Register value, std::uint16_t set) {
    leave_numbers();
    return append(StepKind::StringFunction, code, value, set, type_text);
}

void Recorder::leave_numbers() {
    m_program.is_numeric = false;
    m_program.touches_pending = true;
}

}  // namespace morandel
