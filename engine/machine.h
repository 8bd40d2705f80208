// Carries out programs.

#pragma once

#include <vector>

#include "base/text_arena.h"
#include "engine/faults.h"
#include "engine/pending.h"
#include "engine/program.h"
#include "engine/registers.h"

namespace morandel {

// Computes a program of numbers from operands that all are in range. False where a step meets an
// error or leaves the range; what it has written then does not count.
bool run_numbers(const Program& program, double* numbers);

// Computes any program, and all that comes of errors.
class Machine {
  public:
    Machine(Registers& registers, Pending& pending, Faults& faults)
        : m_registers(registers), m_pending(pending), m_faults(faults) {}

    // The result's text lives until the next run.
    Value run(const Program& program, ArgumentStack<double>& numbers);

  private:
    void further_argument(const Step& step, const Value& value, ArgumentStack<double>& numbers);

    Registers& m_registers;
    Pending& m_pending;
    Faults& m_faults;
    std::vector<ExtraArguments> m_sets;  // of further arguments
    TextArena m_texts;
};

}  // namespace morandel
