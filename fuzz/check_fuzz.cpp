// Checks of many formulas on one object, with and without a reset between them.

#include "fuzz/bytes.h"
#include "morandel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    CExpressionCheck check;
    MYPARA number{"a", 2.5, ""};
    MYPARA text{"s", 0.0, "text"};
    check.SetNumberOfPara(2);
    check.SetPara(&number, 1, false);
    check.SetPara(&text, 2, true);
    for (int checks = 0; checks < 8 && !bytes.empty(); ++checks) {
        const int choice = bytes.below(8);
        if (choice < 4) check.Reset();
        const std::string formula = bytes.line();
        const bool faulty = check.CheckExpression(formula.c_str());
        if (choice < 4 && !faulty && !check.m_errors.empty()) __builtin_trap();
        for (const CheckexpressionError& fault : check.m_errors) {
            if (fault.nType < 0 || fault.nType > 4 || fault.nPosition < 0 || fault.nPosition > 512)
                __builtin_trap();
        }
        (void)check.GetCommaNum();
        (void)check.GetLocalNumber();
        if (choice == 7) (void)check.CountCommaCheck();
    }
    return 0;
}
