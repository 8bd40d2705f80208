// The source of tokens for the formulas that most are: well formed, and read once, straight from
// the text. What it cannot vouch for it refuses; the grammar check then judges.

#pragma once

#include <cstdint>
#include <utility>

#include "engine/parameters.h"
#include "engine/recorder.h"
#include "engine/scanner.h"
#include "engine/token_reader.h"
#include "language/characters.h"

namespace morandel {

class WellFormedText {
  public:
    WellFormedText(const char* formula, const Parameters& parameters,
                   DefaultFloatingPointIfNeeded& environment)
        : m_scanner(formula, environment), m_parameters(parameters) {}

    // Once the levels have read it: whether the formula is well formed, by the grammar check too.
    [[nodiscard]] bool is_accepted() const { return !m_refused && m_token.is(TokenClass::end); }
    // What the last number or parameter was.
    [[nodiscard]] LastRead last_read() const { return m_last_read; }
    // What was read last before, where a named constant comes first, which is the same then; a
    // number is taken for granted here.
    [[nodiscard]] LastRead needs() const { return m_needs; }

    [[nodiscard]] const Token& token() const { return m_token; }
    [[nodiscard]] OperandKind operand() const { return m_token.operand(m_last_read); }

    void get_token();

    Register may_miss_expression(Recorder& recorder) { return may_miss_operand(recorder); }
    // A name without a value does for the grammar.
    Register may_miss_operand(Recorder& recorder) {
        if (!m_token.is(TokenClass::name) || m_token.text.size() > longest_free_name) {
            refuse();
            return Registers::nothing;
        }
        const Register value = recorder.lacking(m_token);
        get_token();
        return value;
    }
    void may_miss_close(Recorder& /*recorder*/) { refuse(); }

    // Powers and relations come in the order of the grammar check, between sums and products of a
    // pair of parentheses and past commas.
    void take_operator() {
        const std::uint8_t rank = m_token.level < Level::power
                                      ? std::uint8_t{0}
                                      : operator_index[static_cast<unsigned char>(m_token.code)];
        if (m_token.level == Level::factorial || (rank != 0 && rank < m_rank)) [[unlikely]]
            refuse();
        m_rank = rank;
        get_token();
    }

    std::uint8_t open() {
        if (++m_depth > deepest) [[unlikely]]
            refuse();
        return std::exchange(m_rank, std::uint8_t{0});
    }
    void close(std::uint8_t outer) {
        m_rank = outer;
        --m_depth;
    }

  private:
    static constexpr int deepest = 64;

    void refuse();
    void read_name();

    Scanner m_scanner;
    const Parameters& m_parameters;
    Token m_token;
    bool m_refused = false;
    LastRead m_last_read = LastRead::nothing;
    LastRead m_needs = LastRead::nothing;
    std::uint8_t m_rank = 0;  // of the power or relation before
    int m_depth = 0;
};

}  // namespace morandel
