// A number that one thread leaves pending, and what a formula of another one finds.

#pragma once

#include <thread>

#include <morandel.h>

namespace morandel::tests {

// 1 where nothing is pending, 5 where that number is.
inline double found_by_another_thread() {
    // Both first, since each empties what is pending.
    CExpress giving;
    CExpress taking;
    std::thread([&] {
        giving.SetExpression("strcase(\"x\", 5)");
        giving.CalcExpression();
    }).join();
    taking.SetExpression("if(1, 7)");
    taking.CalcExpression();
    return taking.GetResult();
}

}  // namespace morandel::tests
