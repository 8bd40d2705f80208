// A number that is left pending, and what a formula finds when another thread had a part in it.

#pragma once

#include <thread>

#include <morandel.h>

namespace morandel::tests {

inline void leave_five(CExpress& giving) {
    giving.SetExpression("strcase(\"x\", 5)");
    giving.CalcExpression();
}

// 1 where nothing is pending, 5 where that number is.
inline double found(CExpress& taking) {
    taking.SetExpression("if(1, 7)");
    taking.CalcExpression();
    return taking.GetResult();
}

// Another thread leaves the number.
inline double found_by_another_thread() {
    // Both first, since each empties what is pending.
    CExpress giving;
    CExpress taking;
    std::thread([&] { leave_five(giving); }).join();
    return found(taking);
}

// Another thread makes an evaluator in between.
inline double found_after_an_evaluator_of_another_thread() {
    CExpress giving;
    CExpress taking;
    leave_five(giving);
    std::thread([] { CExpress newer; }).join();
    return found(taking);
}

}  // namespace morandel::tests
