// The tokens of a formula as a list, read one after the other, for all that walks a formula more
// than once, or one that is not well formed.

#pragma once

#include <cstdint>
#include <vector>

#include "engine/faults.h"
#include "engine/parameters.h"
#include "engine/recorder.h"
#include "engine/token.h"

namespace morandel {

// What a token is of these. A name that is a parameter becomes one.
inline LastRead isConstVariable(Token& token, const Parameters& parameters) {
    if (token.is(TokenClass::number)) return LastRead::number;
    if (!token.is(TokenClass::name) && !token.is(TokenClass::parameter)) return LastRead::nothing;
    const int slot = parameters.find(token.text);
    token.slot = static_cast<std::uint16_t>(slot);
    token.token_class = slot < 0 ? TokenClass::name : TokenClass::parameter;
    if (slot < 0) return LastRead::nothing;
    return parameters.is_text(token.slot) ? LastRead::text : LastRead::number;
}

class TokenReader {
  public:
    explicit TokenReader(const Parameters& parameters) : m_Para(parameters) {}

    // Tokens of a formula of at most 512 bytes. The reading position stays among them.
    void cut(const char* formula);
    void clear() {
        m_Tokens.clear();
        m_Prog = 0;
        end();
    }
    [[nodiscard]] bool empty() const { return m_Tokens.empty(); }

    // Reads the next token; at the end of the formula it stays there.
    void get_token();
    [[nodiscard]] bool at(char code) const { return m_Token->code == code; }
    [[nodiscard]] bool at(TokenClass token_class) const { return m_Token->is(token_class); }
    // As though there were nothing more.
    void end() { m_Token = &end_of_nothing; }

    // The reading position as a number of tokens. What stands for the end is that where tokens are.
    static constexpr std::uint16_t end_position = 0xFFFF;
    [[nodiscard]] std::uint16_t tell() const { return m_Prog; }
    void seek(std::uint16_t position) {
        const bool is_at_end = position == end_position && !empty();
        m_Prog = is_at_end ? static_cast<std::uint16_t>(m_Tokens.size() - 1) : position;
    }

    // Whether an evaluation can read or leave values of further arguments, however far it comes.
    [[nodiscard]] bool can_touch_pending() const;

    // Records the levels' walk from here on.
    void get_exp(Program& program, Registers& registers);

    // What the levels ask of a source. A missing operand is not read over, a missing ")" is.
    [[nodiscard]] const Token& token() const { return *m_Token; }
    [[nodiscard]] OperandKind operand() const { return m_Token->operand(last_read()); }
    // What the constant last read was; literals and named constants do not touch it.
    [[nodiscard]] LastRead last_read() const {
        return m_IsNumber ? LastRead::number : LastRead::text;
    }
    void set_last_read(LastRead last_read) {
        if (last_read != LastRead::nothing) m_IsNumber = last_read == LastRead::number;
    }
    Register may_miss_expression(Recorder& recorder) {
        return recorder.serror(Error::no_expression);
    }
    Register may_miss_operand(Recorder& recorder) {
        return at(TokenClass::name) ? recorder.lacking(*m_Token)
                                    : recorder.serror(Error::bad_expression);
    }
    void may_miss_close(Recorder& recorder) { recorder.serror(Error::unbalanced_parentheses); }
    void take_operator() { get_token(); }
    int open() { return 0; }
    void close(int /*outer*/) {}

  private:
    const Parameters& m_Para;
    const Token* m_Token = &end_of_nothing;
    bool m_IsNumber = true;
    std::vector<Token> m_Tokens;  // the end token last
    std::uint16_t m_Prog = 0;     // the token to be read next
};

// The grammar check: whether a formula is accepted, from the reading position on. The first
// rejection is recorded, and ends the check.
bool verify(TokenReader& tokens, Faults& faults, int& expression_status);

}  // namespace morandel
