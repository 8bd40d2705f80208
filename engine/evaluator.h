// The evaluator behind CExpress. Most formulas are well formed and have a value for each name; they
// are recorded while they are read, and never cut into tokens.

#pragma once

#include <cstdint>
#include <string>

#include <morandel/express.h>

#include "engine/faults.h"
#include "engine/free_variables.h"
#include "engine/machine.h"
#include "engine/parameters.h"
#include "engine/pending.h"
#include "engine/program.h"
#include "engine/registers.h"
#include "engine/token_reader.h"
#include "language/characters.h"

namespace morandel {

class Evaluator {
  public:
    // What hosts read directly belongs to the face.
    Evaluator(std::string& result, std::string& message, int& status);

    // The calls of the face, see express.h.
    int SetExpression(const char* text);
    int VerifyExpression();
    int CalcExpression();
    [[nodiscard]] double GetResult() const { return m_faults.m_Status != 0 ? m_Result : 0.0; }
    [[nodiscard]] int GetResultType() const { return m_faults.m_Status != 0 ? m_ResultType : 0; }
    [[nodiscard]] int GetExpressionStatus() const { return m_ExpressionStatus; }

    [[nodiscard]] Parameters& parameters() { return m_Para; }
    [[nodiscard]] const Parameters& parameters() const { return m_Para; }
    [[nodiscard]] const FreeVariables& variables() const { return m_variables; }
    [[nodiscard]] Faults& faults() { return m_faults; }
    // The program of the evaluation last made.
    [[nodiscard]] const Program& program() const { return m_program; }

    // The tokens of the formula, for other walks than the evaluation's. They end the evaluation
    // where they stand.
    TokenReader& tokens();

    void drop_formula();

    // What an evaluation finds of earlier ones: where two are equal, the same formula with the same
    // parameters gave and will give the same.
    struct Memory {
        std::uint64_t changes;  // of what is pending
        bool is_number;
        bool operator==(const Memory&) const = default;
    };
    [[nodiscard]] Memory memory() const;

  private:
    // What the program was recorded for, and what its evaluation leaves.
    struct Recorded {
        std::uint32_t generation = 0;  // of the parameters; 0 for none
        std::uint16_t start = 0;       // the reading position
        std::uint16_t end = 0;
        LastRead needs = LastRead::nothing;
        LastRead leaves = LastRead::nothing;
    };

    int load(const char* text);
    bool accept();
    [[nodiscard]] bool is_recorded() const;
    void record();

    Faults m_faults;
    std::string& m_StrResult;
    double m_Result = 0.0;
    int m_ResultType = 0;
    int m_ExpressionStatus = 0;

    Registers m_registers;
    Parameters m_Para{m_registers};
    TokenReader m_tokens{m_Para};
    FreeVariables m_variables;
    Program m_program;
    Recorded m_recorded;
    Pending m_pending;
    Machine m_machine{m_registers, m_pending, m_faults};

    // The parameters' generation with which the formula was accepted without a fault and without
    // free variables, so that it need not be read again; 0 where it was not.
    std::uint32_t m_settled = 0;
    LastRead m_accepting_leaves = LastRead::nothing;
    char m_Formula[longest_formula + 1];
};

}  // namespace morandel
