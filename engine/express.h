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
// One evaluator serves one thread at a time, and since all of a process share the numbers that
// calls leave for one another, no two evaluators may evaluate at the same time, unless the library
// is built with MORANDEL_PER_THREAD_STATE.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/argument_stack.h"
#include "engine/errors.h"
#include "engine/export.h"
#include "engine/parameters.h"
#include "engine/text_arena.h"
#include "engine/token.h"
#include "engine/value.h"

namespace morandel {
class Program;
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
    static constexpr int max_parameters = morandel::Parameters::most;
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

    // Loads a formula, checks its grammar and lists its free variables. Refused are: null; a text
    // of more than 512 bytes, which changes nothing at all; a text that VerifyExpression refuses,
    // which leaves an empty formula.
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
    // no "(", 7 illegal character, 8 operator missing.
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
    // What the checker works with as well.
    void get_token();
    void serror(int n);
    void serror(morandel::Error error) { serror(static_cast<int>(error)); }
    [[nodiscard]] bool at(char code) const { return m_Token->code == code; }
    // What an evaluation finds of earlier ones: where two are equal, the same formula with the same
    // parameters gave and will give the same.
    struct Memory {
        std::uint64_t changes;  // of what is pending
        bool is_number;
        bool operator==(const Memory&) const = default;
    };
    [[nodiscard]] Memory memory() const;
    // The name of a parameter without which the loaded formula, one of numbers alone, can only fail
    // and leaves nothing behind; empty where none is known. Part of the formula.
    [[nodiscard]] std::string_view missing_name() const { return m_MissingName; }
    [[nodiscard]] morandel::Parameters& parameters() { return m_Para; }
    [[nodiscard]] const morandel::Parameters& parameters() const { return m_Para; }

    // The reading position as a number of tokens, and back to one.
    [[nodiscard]] std::size_t tell() const;
    void seek(std::size_t position);
    void rewind() {
        need_tokens();
        m_Prog = m_Tokens.empty() ? &morandel::end_of_nothing : m_Tokens.data();
    }

    const morandel::Token* m_Token;  // the current token
    const morandel::Token* m_Prog;   // the one to be read next
    morandel::TokenType m_TokenType = morandel::NONE;
    bool m_IsNumber = true;  // whether the constant last read was a number; literals and named
                             // constants do not touch it

  private:
    using Value = morandel::Value;

    // What there is of the formula. Those from constant_tokens on were accepted without a fault and
    // have no free variables: loading them again changes nothing.
    enum class Loaded : std::uint8_t {
        nothing,
        tokens,
        constant_tokens,
        program,           // compiled and ready; no tokens
        finished_program,  // compiled and computed; no tokens
    };

    void drop_formula();
    void forget_faults();
    [[nodiscard]] bool is_loaded(const char* text) const;
    void load_again();
    int load(const char* text);
    bool load_program();
    bool load_tokens();
    void need_tokens() {
        if (m_Loaded == Loaded::program || m_Loaded == Loaded::finished_program) cut_tokens();
    }
    void cut_tokens();
    bool isConstVariable(const morandel::Token& name);
    bool has_constants_only();
    void list_variables();
    [[nodiscard]] const VariableNode* find_variable(std::string_view name) const;
    void push_variable(std::string_view name, int type);

    // Grammar, see validator.cpp.
    bool verify_plain();
    bool E();
    bool T();
    bool F();
    bool C();
    bool P();
    bool R();
    void check_next_token();
    bool reject(int status, morandel::Error error);
    bool reject(morandel::Error error);

    [[nodiscard]] bool has_much_pending() const;
    void drop_pending();
    bool run_program();
    void calculate_by_levels();

    // Levels, see levels.cpp.
    void get_exp(Value& value);
    void level2(Value& value);
    void level3(Value& value);
    void level4(Value& value);
    void level5(Value& value);
    void level6(Value& value, char prefix);
    void argument(Value& value);
    void primitive(Value& value);
    void read_further_arguments(Value& value, char prefix);
    void unary(char code, Value& value);
    void atith(char code, Value& left, double right);
    void MUL_Atith(char code, Value& left, const Value& right);
    // Carries out a string function on the value in hand; its face is in strfuncs/.
    void StringFunction(char code, Value& value);

    morandel::Parameters m_Para;

    Loaded m_Loaded = Loaded::nothing;
    std::uint32_t m_LoadedGeneration = 0;  // of the parameters
    std::optional<bool> m_ReadIsNumber;    // what loading has left in m_IsNumber
    std::unique_ptr<morandel::Program> m_Program;
    std::string_view m_MissingName;
    std::vector<morandel::Token> m_Tokens;
    bool m_CheckEnded = false;  // by a literal without its closing quote

    std::deque<VariableNode> m_VariableNodes;  // in order of first appearance, then spare ones
    VariableNode* m_VariableList = nullptr;
    int m_VariableNum = 0;
    int m_VariableType = 0;  // of the variable handled last

    morandel::StringArgument m_StringArgument;
    morandel::ArgumentStack<std::string> m_TempStr;  // texts of further arguments
    std::size_t m_PushedBytes = 0;  // of such texts, since those pending were counted last
    std::vector<morandel::ExtraArguments> m_ExtraArguments;  // one for each call under way
    morandel::TextArena m_Texts;

    double m_Result = 0.0;
    int m_ResultType = 0;
    int m_ErrorNumber = -1;
    int m_ExpressionStatus = 0;
    char m_Formula[max_formula + 1] = "";
};
