// A host that knows nothing but the installed library, and uses each of its classes.

#include <morandel.h>

#include <iostream>
#include <string>

int main() {
    CExpress e;
    MYPARA s{"s", 0.0, "total"};
    e.SetNumberOfPara(1);
    e.SetPara(&s, 1, true);
    if (e.SetExpression("preci(2.675, 2)") == 0 || e.CalcExpression() == 0) return 1;
    std::cout << e.GetResult();
    if (e.SetExpression("strtrims(s)") == 0 || e.CalcExpression() == 0) return 1;
    std::cout << ' ' << e.m_StrResult;

    CVariableExpressList list;
    list.Append(CVariableExpress::given, "price", 12.5, "");
    list.Append(CVariableExpress::computed, "total", 0.0, "price*3");
    if (list.Cal() == 0) return 1;
    std::cout << ' ' << list.FindByName("total")->GetValue();

    CExpressionCheck check;
    check.Reset();
    if (!check.CheckExpression("sqrt(\"a\")")) return 1;
    std::cout << ' ' << check.GetExpressionError(0).strName;

    CCStringNode first = "abc";
    const CCStringNode last("text");
    first.m_pNext = nullptr;
    std::cout << ' ' << first.m_strText << '\n';

    std::string text;
    const bool known = !morandel::functions().empty() && morandel::find_function("strsub") &&
                       morandel::error_table().size() > 50 && morandel::error_message(3) &&
                       morandel::english_error_message(3) &&
                       morandel::expected_kind("strsub", 1) == CExpressionCheck::kind_text &&
                       morandel::number_to_text(0.5, -1, text) == morandel::ErrorNumber::none;
    return known && last.m_strText == "text" ? 0 : 1;
}
