#include "formula/places.h"

namespace morandel::formula {

Register NotingReader::may_miss_expression(NotingRecorder& recorder) {
    const Register value = m_tokens.may_miss_expression(recorder);
    recorder.note(here());
    return value;
}

Register NotingReader::may_miss_operand(NotingRecorder& recorder) {
    const Register value = m_tokens.may_miss_operand(recorder);
    recorder.note(here());
    return value;
}

void NotingReader::may_miss_close(NotingRecorder& recorder) {
    m_tokens.may_miss_close(recorder);
    recorder.note(here());
}

void NotingReader::take_operator() {
    m_operators.push_back(here());
    get_token();
}

Extent NotingReader::last_operator() {
    const Extent place = m_operators.back();
    m_operators.pop_back();
    return place;
}

NotingRecorder::Call NotingRecorder::begin_call(char code) {
    m_calls.push_back(m_source.here());
    return Recorder::begin_call(code);
}

Register NotingRecorder::end_call(Register value, Call outer) {
    const Register result = Recorder::end_call(value, outer);
    note(m_calls.back());
    m_calls.pop_back();
    return result;
}

void NotingRecorder::first_argument(Register value) {
    Recorder::first_argument(value);
    note(here_or_call());
}

void NotingRecorder::further_argument(std::size_t index, Register value) {
    Recorder::further_argument(index, value);
    note(here_or_call());
}

Register NotingRecorder::atith(char code, Register left, Register right) {
    const Register result = Recorder::atith(code, left, right);
    note(m_source.last_operator());
    return result;
}

Register NotingRecorder::MUL_Atith(char code, Register left, Register right) {
    const Register result = Recorder::MUL_Atith(code, left, right);
    note(m_source.last_operator());
    return result;
}

}  // namespace morandel::formula
