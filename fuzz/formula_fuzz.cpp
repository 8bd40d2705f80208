// One formula with two numbers and a text: compiled and by the levels, on new evaluators, all that
// shows must be the same; and one that has seen all before must agree on what the formula is.

#include <optional>

#include "engine/characters.h"
#include "fuzz/bytes.h"
#include "morandel.h"

namespace {

struct Evaluator : CExpress {
    void forbid_program() { seek(0); }

    void declare(double a, double b) {
        MYPARA first{"a", a, ""};
        MYPARA second{"rate", b, ""};
        MYPARA text{"s", 0.0, "a b,c"};
        SetNumberOfPara(3);
        SetPara(&first, 1, false);
        SetPara(&second, 2, false);
        SetPara(&text, 3, true);
    }
};

bool same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Each strcat can double a text. Megabytes are tested elsewhere; here they take the time of a
// thousand other formulas.
bool may_grow_large(std::string formula) {
    for (char& c : formula) c = morandel::to_lower(c);
    int calls = 0;
    for (std::size_t at = formula.find("strcat"); at != std::string::npos;
         at = formula.find("strcat", at + 1)) {
        ++calls;
    }
    return calls > 5;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::string formula = bytes.line();
    if (may_grow_large(formula)) return -1;
    const double a = bytes.number();
    const double b = bytes.number();
    // Not for ever: what formulas leave for one another can grow to megabytes a run.
    static std::optional<Evaluator> used;
    static int runs = 0;
    if (runs++ % 256 == 0) used.emplace();
    used->declare(a, b);
    const int accepted = used->SetExpression(formula.c_str());
    const int status = used->GetStatu();
    used->CalcExpression();

    Evaluator plain;
    plain.declare(a, b);
    if (plain.SetExpression(formula.c_str()) != accepted) __builtin_trap();
    if (accepted == 1 && plain.GetStatu() != status) __builtin_trap();
    if (accepted == 1 && plain.GetVariableNum() != used->GetVariableNum()) __builtin_trap();
    plain.forbid_program();
    const int computed = plain.CalcExpression();

    Evaluator fast;  // empties the numbers that are pending
    fast.declare(a, b);
    fast.SetExpression(formula.c_str());
    if (fast.CalcExpression() != computed || !same(fast.GetResult(), plain.GetResult()) ||
        fast.GetResultType() != plain.GetResultType() || fast.m_StrResult != plain.m_StrResult ||
        fast.m_ErrorMessage != plain.m_ErrorMessage) {
        __builtin_trap();
    }
    return 0;
}
