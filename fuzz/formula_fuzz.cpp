// One formula: loaded and evaluated on a fresh evaluator and on one that has seen all before. Both
// must agree on what the formula is; what it gives may differ by what is pending.

#include "fuzz/bytes.h"
#include "morandel.h"

namespace {

void declare(CExpress& e) {
    MYPARA number{"a", 2.5, ""};
    MYPARA text{"s", 0.0, "a b,c"};
    e.SetNumberOfPara(2);
    e.SetPara(&number, 1, false);
    e.SetPara(&text, 2, true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static CExpress used;
    const std::string formula(data, data + size);
    CExpress fresh;
    declare(fresh);
    declare(used);
    const int accepted = used.SetExpression(formula.c_str());
    const int status = used.GetStatu();
    used.CalcExpression();
    if (fresh.SetExpression(formula.c_str()) != accepted) __builtin_trap();
    if (accepted == 1 && fresh.GetStatu() != status) __builtin_trap();
    if (accepted == 1 && fresh.GetVariableNum() != used.GetVariableNum()) __builtin_trap();
    fresh.CalcExpression();
    return 0;
}
