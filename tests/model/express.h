// The slow, obvious evaluator: tokens, grammar rules, a walk for the variables, and levels that
// compute as they read. Nothing is kept, skipped or looked up twice for speed. It has the public
// calls of CExpress and shares no code with the library, which is compared with it.

#pragma once

#include <deque>
#include <string>
#include <vector>

#include "tests/model/errors.h"
#include "tests/model/tokens.h"
#include "tests/model/value.h"

namespace model {

struct Para {
    std::string name;
    double value = 0.0;
    std::string strValue;
};

struct VariableNode {
    std::string name;
    int type = 0;
    VariableNode* next = nullptr;
};

class Express {
  public:
    static constexpr int max_parameters = 50;
    static constexpr std::size_t max_formula = 512;

    Express();

    int SetNumberOfPara(int n);
    int SetPara(const Para* para, int index, bool isString);
    int SetExpression(const char* text);
    int VerifyExpression();
    int CalcExpression();
    double GetResult() const { return m_Status != 0 ? m_Result : 0.0; }
    int GetResultType() const { return m_Status != 0 ? m_ResultType : 0; }
    int GetStatu() const { return m_Status; }
    int GetExpressionStatus() const { return m_ExpressionStatus; }
    int GetErrorNumber() const { return m_ErrorNumber; }
    VariableNode* GetVariableList() const { return m_VariableList; }
    int GetVariableNum() const { return static_cast<int>(m_VariableNodes.size()); }
    std::string GetVariable(int index, int* type) const;
    void ClearOld();

    // All texts and numbers that calls have left for one another.
    [[nodiscard]] const std::vector<std::string>& pending_texts() const { return m_TempStr; }

    std::string m_StrResult;
    std::string m_ErrorMessage;
    int m_Status = 1;

  protected:
    enum TokenType { NONE, DELIMITER, VARIABLE, CONSTANT };
    struct Parameter {
        std::string name;
        bool is_text = false;
        double number = 0.0;
        std::string text;
    };

    void get_token();
    void serror(int number);
    [[nodiscard]] const Token& token() const { return m_Tokens[m_Current]; }
    [[nodiscard]] bool at(char code) const { return token().code == code; }
    [[nodiscard]] const Parameter* find_parameter(const std::string& name) const;

    std::vector<Token> m_Tokens{1};  // the end token last
    std::size_t m_Current = 0;       // the token in hand
    std::size_t m_Prog = 0;          // the one to be read next
    TokenType m_TokenType = NONE;
    bool m_IsNumber = true;  // whether the constant last read was a number; literals and named
                             // constants do not touch it

  private:
    void set_tokens(const std::vector<Token>& tokens);
    void forget_faults();
    void list_variables();
    [[nodiscard]] const VariableNode* find_variable(const std::string& name) const;
    void push_variable(const std::string& name, int type);

    // rules.cpp
    bool E();
    bool T();
    bool F();
    bool C();
    bool P();
    bool R();
    void check_next_token();
    bool reject(int status, Error error);
    bool reject(Error error);

    // levels.cpp
    void get_exp(Value& value);
    void level2(Value& value);
    void level3(Value& value);
    void level4(Value& value);
    void level5(Value& value);
    void level6(Value& value, char prefix);
    void primitive(Value& value);
    void read_further_arguments(Value& value, char prefix);
    void unary(char code, Value& value);
    void atith(char code, Value& left, double right);
    void StringFunction(char code, Value& value);
    void drop_pending();

    int m_ParaCount = 0;
    std::vector<Parameter> m_Para{max_parameters};

    bool m_CheckEnded = false;  // by a literal without its closing quote

    std::deque<VariableNode> m_VariableNodes;  // in order of first appearance
    VariableNode* m_VariableList = nullptr;
    int m_VariableType = 0;  // of the variable handled last

    StringArgument m_StringArgument;
    std::vector<std::string> m_TempStr;  // texts of further arguments
    std::size_t m_PushedBytes = 0;       // of such texts, since those pending were counted last
    std::vector<ExtraArguments> m_ExtraArguments;  // one for each call under way

    double m_Result = 0.0;
    int m_ResultType = 0;
    int m_ErrorNumber = -1;
    int m_ExpressionStatus = 0;
};

}  // namespace model
