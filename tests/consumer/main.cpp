// A host that knows nothing but the installed library.

#include <morandel.h>

#include <iostream>

int main() {
    CExpress e;
    if (e.SetExpression("preci(2.675, 2)") == 0 || e.CalcExpression() == 0) return 1;
    std::cout << e.GetResult() << '\n';
    const CCStringNode node("text");
    return node.m_strText == "text" && !morandel::functions().empty() ? 0 : 1;
}
