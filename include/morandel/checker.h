// The face of the checker: it walks a formula without evaluating it and records every operand and
// argument of the wrong kind and every wrong number of arguments.
//
//     CExpressionCheck check;
//     check.Reset();
//     if (check.CheckExpression("sqrt(\"a\")+1"))
//         for (const CheckexpressionError& fault : check.m_errors)
//             report(fault.strName, fault.nType, fault.nIndex, fault.nPosition);
//
// A formula that SetExpression refuses has no records, so CheckExpression gives false for it; its
// status and message tell, but for those that are refused in silence, see SetExpression. Parameters
// may be declared as for an evaluation; a string parameter counts as an operand of no kind.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <morandel/export.h>
#include <morandel/express.h>

namespace morandel {
class Checking;
}

// One fault.
struct CheckexpressionError {
    int nType = 0;        // 0 no number before "!", 1 no number, 2 no string, 3 too few arguments,
                          // 4 too many arguments
    int nPosition = 0;    // bytes from the start of the formula: for a function or a sign just past
                          // it, for an operator just past the token after it
    int nIndex = 0;       // operand or argument, from 1; 0 for too many arguments
    std::string strName;  // operator or function; strtrims is "strims", strtrim "Trim", r2s "R2S",
                          // s2r "S2R"
};

// To be destroyed as what it is: CExpress has no virtual destructor.
class MORANDEL_EXPORT CExpressionCheck : public CExpress {
  public:
    // What an operand can be.
    enum Kind : int { kind_open = 0, kind_number = 1, kind_text = 2, kind_variable = 3 };

    CExpressionCheck();
    virtual ~CExpressionCheck();

    // Checks a formula of at most 512 bytes; true where it has faults, which are appended to
    // m_errors, and, with none, where it is accepted with a status of 0 (5!+). Call Reset first:
    // faults and arguments of the check before stay otherwise.
    bool CheckExpression(const char* text);

    // Empties m_errors and m_argKinds and sets m_tokenCount to 0.
    void Reset();

    // The fault of that index, from 0; std::invalid_argument where there is none.
    const CheckexpressionError& GetExpressionError(int index) const;

    // Commas of the argument list of the step under way; reads on to behind the list.
    int CountCommaCheck();
    // Arguments after a comma: of the last list where one step is under way within another, else
    // of all lists that are open.
    int GetCommaNum();
    // Arguments after a comma in the list that was opened last.
    int GetLocalNumber();
    // Ends a step.
    void InitStep();
    // Forgets the arguments of the call that ends; neither parameter is used.
    void InitTempHolde(int* errorFlag, int count);

    std::vector<CheckexpressionError> m_errors;
    CheckexpressionError m_current;  // the fault recorded last
    int m_step = -1;                 // the step under way; left, right and if leave theirs open
    int m_depth = 0;
    int m_resultKind = kind_open;           // of the whole formula
    int m_tokenCount = 0;                   // operands, operators, parentheses and commas met
    std::vector<std::uint32_t> m_argKinds;  // kinds of the arguments after a comma

  private:
    friend class morandel::Checking;

    std::unique_ptr<morandel::Checking> m_pChecking;
};

namespace morandel {

// The kind that an operand or argument of a fault should have, by the fault's strName and nIndex: a
// CExpressionCheck::Kind, or -1 for one that is not checked.
//     expected_kind("strsub", 1)   // CExpressionCheck::kind_text
MORANDEL_EXPORT int expected_kind(const std::string& name, int index);

}  // namespace morandel
