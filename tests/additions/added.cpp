// Whether all that tests/additions.sh adds is known everywhere.

#include <iostream>
#include <string>

#include <morandel.h>

namespace {

int failures = 0;

void expect(bool holds, const std::string& what) {
    if (holds) return;
    std::cout << "not so: " << what << '\n';
    ++failures;
}

struct Formula {
    const char* text;
    double number;
    const char* result = "";
    int error = -1;
};

const Formula formulas[] = {
    {"cube(3)", 27.0},
    {"CUBE(1+1)*2", 16.0},
    {"cube(a)#1", 4.5},
    {"cube(10^101)", 0.0, "", 80},
    {"4#2", 3.0},
    {"1+4#2*3", 10.0},
    {"-4#a", -1.0},
    {"1#", 0.0, "", 31},
    {"twice(\"ab\")", 0.0, "abab"},
    {"strlen(twice(s))", 8.0},
    {"s lacks \"xyz\"", 1.0},
    {"s lacks \"ex\"", 0.0},
    {"2 * twice(s) lacks s", 0.0},
    {"s lacks", 0.0, "", 63},
};

void evaluate(const Formula& formula) {
    CExpress e;
    MYPARA a{"a", 2.0, ""};
    MYPARA s{"s", 0.0, "text"};
    e.SetNumberOfPara(2);
    e.SetPara(&a, 1, false);
    e.SetPara(&s, 2, true);
    const bool succeeded = e.SetExpression(formula.text) == 1 && e.CalcExpression() == 1;
    expect(succeeded == (formula.error < 0), std::string(formula.text) + " evaluates");
    expect(e.GetErrorNumber() == formula.error,
           std::string(formula.text) + " has error " + std::to_string(e.GetErrorNumber()));
    if (!succeeded) return;
    if (*formula.result != '\0') {
        expect(e.m_StrResult == formula.result, std::string(formula.text) + " is " + e.m_StrResult);
    } else {
        expect(e.GetResult() == formula.number,
               std::string(formula.text) + " is " + std::to_string(e.GetResult()));
    }
}

struct Check {
    const char* formula;
    const char* name;
    int type;
    int index;
};

const Check checks[] = {
    {"cube(\"a\")", "cube", 1, 1},
    {"twice(1)", "twice", 2, 1},
    {"1 lacks \"a\"", "lacks", 2, 1},
    {"2#\"a\"", "#", 1, 2},
};

void check(const Check& row) {
    CExpressionCheck checker;
    checker.Reset();
    const bool found = checker.CheckExpression(row.formula) && checker.m_errors.size() == 1;
    expect(found, std::string(row.formula) + " has one fault");
    if (!found) return;
    const CheckexpressionError& fault = checker.GetExpressionError(0);
    expect(fault.strName == row.name && fault.nType == row.type && fault.nIndex == row.index,
           std::string(row.formula) + " has the fault " + fault.strName);
}

}  // namespace

int main() {
    for (const Formula& formula : formulas) evaluate(formula);
    for (const Check& row : checks) check(row);

    CExpressionCheck checker;
    expect(!checker.CheckExpression("cube(x)#twice(s) lacks \"a\""), "what fits has no fault");
    expect(morandel::expected_kind("lacks", 2) == CExpressionCheck::kind_text, "a kind of lacks");

    CExpress e;
    e.SetExpression("twice(t)");
    int type = -1;
    expect(e.GetVariable(1, &type) == "t" && type == 2, "the variable of twice is a text");
    e.SetExpression("x#y");
    expect(e.GetVariableNum() == 2, "# ends a name");
    e.SetExpression("s lacks t");
    expect(e.GetVariableNum() == 2 && e.GetVariable(2, &type) == "t" && type == 2,
           "a variable of lacks is a text");

    CVariableExpressList list;
    list.Append(CVariableExpress::computed, "y", 0.0, "cube(x)#1");
    list.Append(CVariableExpress::given, "x", 3.0, "");
    expect(list.Cal() == 1 && list.FindByNameAndGetValue("y") == 14.0, "a list computes them");

    for (const char* name : {"cube", "twice"}) {
        const morandel::Function* function = morandel::find_function(name);
        expect(function != nullptr && !function->summary.empty(), std::string("help of ") + name);
    }
    const auto message = morandel::error_message(80);
    expect(message && *message == "\xCA\xFD\xD6\xB5\xCE\xAA\xBF\xD5", "the message of error 80");
    expect(morandel::english_error_message(80) == "too large to be cubed", "error 80 in English");
    return failures == 0 ? 0 : 1;
}
