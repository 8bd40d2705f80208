// The slow, obvious checker: the levels once more, with the kind of a value in place of the value.

#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/model/express.h"

namespace model {

struct Fault {
    int nType = 0;
    int nPosition = 0;
    int nIndex = 0;
    std::string strName;
};

struct CheckRule;

class Checker : public Express {
  public:
    enum Kind : int { kind_open = 0, kind_number = 1, kind_text = 2, kind_variable = 3 };

    bool CheckExpression(const char* text);
    void Reset();
    int CountCommaCheck();
    int GetCommaNum() const;
    int GetLocalNumber() const { return static_cast<int>(m_commaMarks.count()); }
    void InitStep();
    void InitTempHolde() { forget_arguments(CountCommaCheck()); }

    std::vector<Fault> m_errors;
    Fault m_current;
    int m_step = -1;
    int m_depth = 0;
    int m_resultKind = kind_open;
    int m_tokenCount = 0;
    std::vector<unsigned> m_argKinds;

  private:
    struct Step {
        std::size_t next_token = 0;
        int position = 0;
    };

    void open_step();
    void read_operator();
    void forget_arguments(int count);
    void record(const char* name, int type, int index);

    void get_exp(int& kind);
    void level2(int& kind);
    void level3(int& kind);
    void level4(int& kind);
    void level5(int& kind);
    void level6(int& kind);
    void primitive(int& kind);
    void read_further_arguments();
    void check_prefix(char code, int& kind);
    void check_operator(char code, int& left, int right);
    void check_call(const CheckRule& rule, int& kind);

    std::vector<Step> m_positions;
    std::vector<int> m_argMarks;  // one for each argument after a comma
    std::bitset<max_formula> m_commaMarks;
    bool m_faulty = false;
};

// How many commas the arguments of a call may have; 0 and -1 where that is not looked for.
struct Commas {
    int fewest;
    int most;
};

struct CheckRule {
    char code;
    const char* name;
    int first_kind;
    int first_fault;
    std::string_view further_kinds;  // '*' repeats the one before it
    std::optional<Commas> commas;    // none: further arguments are neither checked nor forgotten
    bool closes_step;
    int result_kind;
};

struct OperatorRule {
    char code;
    const char* name;
    int kind;  // of both operands
    int left_fault;
    int right_fault;
};

// check_rules.cpp
const CheckRule& rule_of_code(char code);
const OperatorRule& rule_of_operator(char code);
int further_kind(std::string_view kinds, std::size_t comma);  // -1 for one that is not checked

}  // namespace model
