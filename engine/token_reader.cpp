#include "engine/token_reader.h"

#include <algorithm>
#include <cstring>

#include "engine/levels.h"
#include "engine/scanner.h"

namespace morandel {

void TokenReader::cut(const char* formula) {
    m_Tokens.clear();
    m_Tokens.reserve(std::strlen(formula) + 1);  // no token without a byte, but the last
    DefaultFloatingPointIfNeeded environment;
    Scanner scanner(formula, environment);
    do scanner.read_with_place(m_Tokens.emplace_back());
    while (!m_Tokens.back().is(TokenClass::end));
    seek(m_Prog);
}

void TokenReader::get_token() {
    if (empty()) return end();
    Token& token = m_Tokens[m_Prog];
    m_Token = &token;
    if (!token.is(TokenClass::end)) ++m_Prog;
    set_last_read(isConstVariable(token, m_Para));
}

bool TokenReader::can_touch_pending() const {
    return std::ranges::any_of(
        m_Tokens, [](const Token& token) { return token.code == ',' || is_routine(token.prefix); });
}

void TokenReader::get_exp(Program& program, Registers& registers) {
    Levels<TokenReader&>(*this, {program, registers}).get_exp();
}

}  // namespace morandel
