#include "engine/recorder.h"

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
    m_program.is_numeric = false;
    m_program.steps.push_back({StepKind::first_argument, 0, value, 0, 0});
}

void Recorder::further_argument(std::size_t place, Register value) {
    m_program.is_numeric = false;
    m_program.steps.push_back({StepKind::further_argument, 0, value, 0, 0});
    if (place >= ExtraArguments::kept) return;
    if (m_call.further == 0) m_call.further = add_further_arguments();
    m_program.further_arguments[m_call.further - 1U].values[place] = value;
}

Register Recorder::end_routine(char code, Register value, std::uint16_t further) {
    m_program.is_numeric = false;
    if (further == 0) further = add_further_arguments();
    return append(StepKind::StringFunction, code, value, further, type_text);
}

std::uint16_t Recorder::add_further_arguments() {
    m_program.further_arguments.emplace_back();
    return static_cast<std::uint16_t>(m_program.further_arguments.size());
}

}  // namespace morandel
