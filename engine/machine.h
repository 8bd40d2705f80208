// Carries out programs.

#pragma once

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
    Registers& m_registers;
    Pending& m_pending;
    Faults& m_faults;
    TextArena m_texts;
};

}  // namespace morandel
