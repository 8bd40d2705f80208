#include "engine/token_reader.h"

#include <algorithm>
#include <cstring>

#include "engine/levels.h"
#include "engine/scanner.h"

namespace morandel {

void TokenReader::cut(const char* formula) {
    m_Tokens.clear();
    m_Tokens.reserve(std::strlen(formula) + 1);  // no token without a byte, but the last
    Scanner scanner(formula);
    do {
        scanner.read_with_place(m_Tokens.emplace_back());
    } while (m_Tokens.back().token_class != TokenClass::end);
    seek(m_Prog);
}

void TokenReader::get_token() {
    if (m_Tokens.empty()) return end();
    Token& token = m_Tokens[m_Prog];
    m_Token = &token;
    const TokenClass is = token.token_class;
    if (is == TokenClass::end) return;
    ++m_Prog;
    if (is == TokenClass::number) m_IsNumber = true;
    if (is != TokenClass::name && is != TokenClass::parameter) return;
    if (isConstVariable(token, m_Para)) m_IsNumber = !m_Para.is_text(token.slot);
}

void TokenReader::get_exp(Program& program, Registers& registers) {
    Levels<TokenReader&>(*this, {program, registers}).get_exp();
}

}  // namespace morandel
