// The face of the checker: it walks a formula without evaluating it and records every operand and
// argument of the wrong kind and every wrong number of arguments.
//
//     CExpressionCheck check;
//     check.Reset();
//     if (check.CheckExpression("sqrt(\"a\")+1"))
//         for (const CheckexpressionError& fault : check.m_errors)
//             report(fault.strName, fault.nType, fault.nIndex, fault.nPosition);
//
// A formula that SetExpression refuses has no records; its status and message tell. Parameters may
// be declared as for an evaluation; a string parameter counts as an operand of no kind.

#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/export.h"
#include "engine/express.h"

namespace morandel {
struct CheckRule;
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

class MORANDEL_EXPORT CExpressionCheck : public CExpress {
  public:
    // What an operand can be.
    enum Kind : int { kind_open = 0, kind_number = 1, kind_text = 2, kind_variable = 3 };

    CExpressionCheck();
    virtual ~CExpressionCheck();

    // Checks a formula of at most 512 bytes; true where it has faults, which are appended to
    // m_errors. Call Reset first: faults and arguments of the check before stay otherwise.
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
    struct Step {
        std::size_t next_token = 0;
        int position = 0;
    };

    void open_step(std::size_t next_token, int position);
    void forget_arguments(int count);
    void record(const char* name, int type, int index);

    // Levels, see check_levels.cpp.
    void Checkget_exp(int& kind);
    void Checklevel2(int& kind);
    void Checklevel3(int& kind);
    void Checklevel4(int& kind);
    void Checklevel5(int& kind);
    void Checklevel6(int& kind);
    void Checkprimitive(int& kind);
    void read_operator();
    void read_further_arguments();

    // Operators and calls, see check_calls.cpp.
    void Checkunary(char code, int& kind);
    void Checkatith(char code, int& left, int right);
    void Check_Mul_atith(char code, int& left, int right);
    void CheckStringFunction(char code, int& kind);
    void check_operator(char code, int& left, int right);
    void check_call(const morandel::CheckRule& rule, int& kind);
    void CheckHead(const morandel::CheckRule& rule, int kind);
    void CheckShortParameters(int commas, int fewest, const char* name);
    void CheckExtraParameters(int commas, int most, const char* name);
    void CheckParameters(int commas, const morandel::CheckRule& rule);

    std::vector<Step> m_positions;
    std::vector<std::uint32_t> m_argMarks;  // one for each argument parsed after a comma
    std::bitset<max_formula> m_commaMarks;  // by place of the argument
    bool m_faulty = false;
};
