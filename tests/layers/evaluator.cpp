// What the engine and the folders below it do alone.

#include <morandel/errors.h>
#include <morandel/express.h>
#include <morandel/language.h>
#include <morandel/number_to_text.h>
#include <morandel/string_node.h>

int main() {
    CExpress e;
    MYPARA s{"s", 0.0, "abc"};
    e.SetNumberOfPara(1);
    e.SetPara(&s, 1, true);
    if (e.SetExpression("strlen(strcat(s, s)) * 7") == 0 || e.CalcExpression() == 0) return 1;
    std::string text;
    if (morandel::number_to_text(e.GetResult(), 0, text) != morandel::ErrorNumber::none) return 1;
    const CCStringNode expected = "42";
    return text == expected.m_strText && morandel::find_function("strcat") != nullptr &&
                   morandel::error_message(3)
               ? 0
               : 1;
}
