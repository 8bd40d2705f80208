// Writes down as a program what the levels meet.

#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/value.h"
#include "engine/program.h"
#include "engine/registers.h"
#include "engine/token.h"
#include "language/functions.h"

namespace morandel {

class Recorder {
  public:
    // Constants go straight to the registers, which have room for what the formula needs.
    Recorder(Program& program, Registers& registers) : m_program(program), m_registers(registers) {
        program.clear();
    }

    using Operand = Register;
    static constexpr Register nothing = Registers::nothing;
    Register parameter(const Token& token) {
        if (m_registers.kind(token.slot) == type_text) m_program.is_numeric = false;
        return token.slot;
    }
    Register number(const Token& token) {
        if (!in_range(token.number)) m_program.is_numeric = false;
        return constant({token.number, {}, type_number});
    }
    Register text(const Token& token) {
        m_program.is_numeric = false;
        return constant({0.0, token.text, type_text});
    }
    // A name without a value.
    Register lacking(const Token& token);
    // A fault, which computation goes on after. Gives the operand that is none.
    Register serror(Error error);

    // Arguments are those of the innermost sign or function, a list in parentheses of its own
    // included.
    struct Call {
        char code = 0;
        std::uint16_t further = 0;  // the number of their set; 0 where there is none yet
    };
    Call begin_call(char code) { return std::exchange(m_call, {code, 0}); }
    // Of strcat, before its second argument.
    void first_argument(Register value);
    void further_argument(std::size_t place, Register value);
    Register end_call(Register value, Call outer) {
        const auto [code, further] = std::exchange(m_call, outer);
        if (code == '+') return value;
        if (is_routine(code)) return end_routine(code, value, further);
        const char operation = code == '-' ? char{code_negate} : code;
        return append(StepKind::unary, operation, value, 0, result_type(code));
    }

    Register atith(char code, Register left, Register right) {
        // Deliberate: to the power of 0 the kind stays, which only the numbers tell.
        if (code == '^' && m_registers.kind(left) != type_number) m_program.is_numeric = false;
        return append(StepKind::atith, code, left, right, type_number);
    }
    Register MUL_Atith(char code, Register left, Register right) {
        if (operator_of_code(code)->texts != nullptr) m_program.is_numeric = false;
        return append(StepKind::MUL_Atith, code, left, right, type_number);
    }

    void finish(Register result) {
        m_program.result = result;
        m_program.type = m_registers.kind(result);
    }

  private:
    // The kind is what numbers give; the machine finds others.
    Register append(StepKind kind, char code, Register left, Register right, ResultType type) {
        m_program.steps.push_back({kind, code, left, right, m_next});
        m_registers.set_kind(m_next, type);
        return m_next++;
    }
    Register constant(const Value& value) {
        m_registers.set(m_next, value);
        return m_next++;
    }
    Register end_routine(char code, Register value, std::uint16_t further);
    std::uint16_t add_further_arguments();

    Program& m_program;
    Registers& m_registers;
    Register m_next = Registers::first_free;
    Call m_call;
};

}  // namespace morandel
