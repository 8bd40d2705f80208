#include "engine/well_formed_text.h"

namespace morandel {

void WellFormedText::get_token() {
    const int begins = m_scanner.read(m_token);
    if (begins == digit) m_last_read = LastRead::number;
    if (begins == name_start) read_name();
    // A literal that spells a function or an operator is not an operand everywhere.
    if (begins == quote && (!m_token.m_QuoteClosed || m_token.is(TokenClass::delimiter))) refuse();
}

void WellFormedText::read_name() {
    const LastRead found = isConstVariable(m_token, m_parameters);
    if (found != LastRead::nothing) {
        m_last_read = found;
    } else if (m_token.is(TokenClass::constant) && m_last_read == LastRead::nothing) {
        m_needs = LastRead::number;
    }
}

// There is nothing more to read then, so that the levels come to their end.
void WellFormedText::refuse() {
    m_refused = true;
    m_scanner.stop();
    m_token = {};
}

}  // namespace morandel
