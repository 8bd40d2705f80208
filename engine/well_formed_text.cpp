#include "engine/well_formed_text.h"

namespace morandel {

void WellFormedText::get_token() {
    const int begins = m_scanner.read(m_token);
    if (begins == digit) m_last_read = LastRead::number;
    if (begins == name_start) read_name();
    // A literal that spells a function or an operator is not an operand everywhere.
    if (begins == quote && (!m_token.m_QuoteClosed || m_token.type() == DELIMITER)) refuse();
}

void WellFormedText::read_name() {
    if (m_token.token_class == TokenClass::name) {
        if (!isConstVariable(m_token, m_parameters)) return;
        m_last_read = m_parameters.is_text(m_token.slot) ? LastRead::text : LastRead::number;
    } else if (m_token.token_class == TokenClass::constant && m_last_read == LastRead::nothing) {
        m_needs = LastRead::number;
    }
}

Register WellFormedText::may_miss_operand(Recorder& recorder) {
    if (m_token.type() != VARIABLE || m_token.text.size() > longest_free_name) {
        refuse();
        return Registers::nothing;
    }
    const Register value = recorder.lacking(m_token);
    get_token();
    return value;
}

// There is nothing more to read then, so that the levels come to their end.
void WellFormedText::refuse() {
    m_refused = true;
    m_scanner.stop();
    m_token = {};
}

}  // namespace morandel
