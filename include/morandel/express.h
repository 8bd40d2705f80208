// The evaluator. A host declares named parameters, loads one formula as text, evaluates it and
// reads back a number or a text, a status, an error number and a Chinese message.
//
//     CExpress e;
//     MYPARA a{"a", 3.0, ""};
//     e.SetNumberOfPara(1);
//     e.SetPara(&a, 1, false);
//     if (e.SetExpression("preci(2.675, 2) * a") && e.CalcExpression())
//         use(e.GetResult());             // 8.04
//     else
//         report(e.m_ErrorMessage);       // bytes of code page 936
//
// All text is bytes in code page 936; lengths and positions count bytes. Calls that can fail
// return 1 for success and 0 for failure and throw nothing but std::bad_alloc.
//
// One evaluator serves one thread at a time; each thread can have evaluators of its own. Numbers
// that calls leave for one another are shared by the evaluators of a thread, or of the process,
// where the library is built with MORANDEL_PROCESS_WIDE_STATE; then one thread alone may evaluate
// at a time.

#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <morandel/export.h>
#include <morandel/result_type.h>

namespace morandel {
class Evaluator;
}

// A parameter as a host hands it to SetPara.
struct MYPARA {
    std::string name;      // as formulas write it; case counts
    double value = 0.0;    // of a numeric parameter
    std::string strValue;  // of a string parameter; any length, any bytes
};

// A name in a formula that is no function, constant or parameter.
struct VariableNode {
    std::string name;
    int type = 0;  // expected by its place: 0 integer, 1 number, 2 string
    VariableNode* next = nullptr;
};

class MORANDEL_EXPORT CExpress {
  public:
    static constexpr int max_parameters = 50;
    static constexpr std::size_t max_formula = 512;  // bytes

    CExpress();
    ~CExpress();
    CExpress(const CExpress&) = delete;
    CExpress& operator=(const CExpress&) = delete;

    // Declares how many parameters count from now on, at most 50; more are refused and leave 0.
    // Slots keep what they hold. A negative count is taken, and no SetPara succeeds then.
    int SetNumberOfPara(int n);

    // Sets parameter 1 <= index <= the declared number: its name, and its text if isString, else
    // its number, which formulas see with 20 decimals. The record is copied. May also be called
    // between SetExpression and CalcExpression.
    int SetPara(MYPARA* para, int index, bool isString);

    // Loads a formula, checks its grammar and lists its free variables. Refused are: null, which
    // leaves a message and no error number; a text of more than 512 bytes, which changes nothing at
    // all; a text that VerifyExpression refuses, which leaves an empty formula. That is in silence,
    // with a status of 1 and no message, where the text is empty, begins with a character that no
    // token begins with, or has a quotation mark that is not closed.
    int SetExpression(const char* text);

    // Checks the grammar from the reading position on, which SetExpression leaves at the start;
    // a later CalcExpression goes on from where the check stopped.
    int VerifyExpression();

    // Evaluates the loaded formula once; SetExpression readies it for another time. Errors do not
    // stop an evaluation: the last message stands, and the status tells.
    int CalcExpression();

    // The number that the last evaluation gave; 0.0 after an error.
    double GetResult();
    // 0 integer (from int), 1 number, 2 string (read m_StrResult); also 0 after an error.
    int GetResultType();
    // 1 while no error occurred, 0 after one; SetExpression and ClearOld bring the 1 back.
    int GetStatu();
    // What the last grammar check found: 0 well formed, 2 ")" missing, 3 nothing after + or -,
    // 4 nothing after * or /, 5 nothing after ^, a word or a relation, 6 nothing after "," or
    // no "(", 7 illegal character, 8 operator missing. What is refused in silence or with the
    // errors 38, 45 and 46 leaves what it was before, at first 0.
    int GetExpressionStatus();
    // The number of the last error, -1 when there was none; its message is in m_ErrorMessage.
    int GetErrorNumber();

    // The free variables, the last found first. The evaluator owns them; they hold until the next
    // formula is accepted.
    VariableNode* GetVariableList();
    int GetVariableNum();
    // Name and type of a free variable by order of first appearance, from 1; an empty text and
    // *type unchanged where there is none.
    //     e.SetExpression("a+b"); int type; e.GetVariable(2, &type);   // "b", type 1
    std::string GetVariable(int index, int* type);

    // Forgets formula, parameter count, status and message. Results and variables stay.
    void ClearOld();

    std::string m_StrResult;     // text that the last evaluation gave
    std::string m_ErrorMessage;  // of the last error
    int m_Status = 1;            // as GetStatu

  protected:
    morandel::Evaluator& evaluator() { return *m_pEvaluator; }

  private:
    std::unique_ptr<morandel::Evaluator> m_pEvaluator;
};
