// The evaluation grammar, by recursive descent. The levels compute nothing: they tell a recorder
// what they meet, and a machine computes afterwards. Each leaves the first token that is not its
// own in hand.
//
// Tokens come from a source, which also decides what becomes of a formula that is not well formed:
//     token(), operand()             the token in hand, and what it is as an operand
//     get_token()                    reads the next one
//     may_miss_expression(recorder)  where there is no token
//     may_miss_operand(recorder)     at a token that is no operand
//     may_miss_close(recorder)       where ")" is missing
//     open(), close(outer)           around what stands in parentheses
//     take_operator()                reads over an operator

#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "engine/recorder.h"
#include "engine/token.h"
#include "language/operators.h"

namespace morandel {

// A source and a recorder are held as they are, or by reference. What a recorder gives for an
// operand is handed back to it.
template <class Source, class Notes = Recorder>
class Levels {
    using Recorded = std::remove_reference_t<Notes>;
    using Operand = typename Recorded::Operand;

  public:
    Levels(Source&& source, Notes&& recorder)
        : m_source(std::forward<Source>(source)), m_recorder(std::forward<Notes>(recorder)) {}

    // Reads a formula.
    void get_exp() {
        m_source.get_token();
        m_recorder.finish(m_source.token().is(TokenClass::end)
                              ? m_source.may_miss_expression(m_recorder)
                              : level2());
    }

    [[nodiscard]] const Source& source() const { return m_source; }

  private:
    [[nodiscard]] bool at(char code) const { return m_source.token().code == code; }

    // level3 { (+|-) level3 }
    Operand level2() {
        Operand value = Recorded::nothing;
        char code = 0;
        do value = join(code, value, level3());
        while ((code = take(Level::sum)) != 0);
        return value;
    }

    // level4 { (*|/) level4 }
    Operand level3() {
        Operand value = Recorded::nothing;
        char code = 0;
        do value = join(code, value, level4());
        while ((code = take(Level::product)) != 0);
        return value;
    }

    // level5 [ ^ level4 ] [ ! ] [ relation level4 ]
    // Deliberate: a relation takes all that follows as its right side, so 1 > 2 and 3 is
    // 1 > (2 and 3).
    Operand level4() {
        const Operand value = level5();
        return m_source.token().level < Level::power ? value : power_or_relation(value);
    }

    Operand power_or_relation(Operand value) {
        if (const char code = take(Level::power)) value = m_recorder.atith(code, value, level4());
        if (const char code = take(Level::factorial)) {
            value = m_recorder.atith(code, value, Recorded::nothing);
        }
        if (const char code = take(Level::relation)) {
            value = m_recorder.MUL_Atith(code, value, level4());
        }
        return value;
    }

    // [ sign | function ] level6
    Operand level5() {
        const char prefix = m_source.token().prefix;
        if (prefix == 0) return level6(prefix);
        const auto outer = m_recorder.begin_call(prefix);
        m_source.get_token();
        return m_recorder.end_call(level6(prefix), outer);
    }

    // ( level2 { , level2 } ) | primitive
    Operand level6(char prefix) {
        if (!at('(')) return primitive();
        const auto outer = m_source.open();
        m_source.get_token();
        const Operand value = level2();
        if (prefix == 'A' && at(',')) m_recorder.first_argument(value);
        for (std::size_t place = 0; at(','); ++place) {
            m_source.get_token();
            m_recorder.further_argument(place, level2());
        }
        if (!at(')')) m_source.may_miss_close(m_recorder);
        m_source.close(outer);
        m_source.get_token();
        return value;
    }

    // constant
    Operand primitive() {
        const Token& token = m_source.token();
        const OperandKind kind = m_source.operand();
        if (kind == OperandKind::none) return m_source.may_miss_operand(m_recorder);
        const Operand value = kind == OperandKind::parameter ? m_recorder.parameter(token)
                              : kind == OperandKind::text    ? m_recorder.text(token)
                                                             : m_recorder.number(token);
        m_source.get_token();
        return value;
    }

    // The first operand has no operator before it.
    Operand join(char code, Operand left, Operand right) {
        return code == 0 ? right : m_recorder.atith(code, left, right);
    }

    // Reads over an operator of that level and tells which it was; 0 where there is none.
    char take(Level level) {
        if (m_source.token().level != level) return 0;
        const char code = m_source.token().code;
        m_source.take_operator();
        return code;
    }

    Source m_source;
    Notes m_recorder;
};

}  // namespace morandel
