// Scripts of public calls on two evaluators: a byte chooses the call, its arguments follow.

#include "fuzz/bytes.h"
#include "morandel.h"

namespace {

void set_parameter(CExpress& e, Bytes& bytes) {
    static const char* const names[] = {"a", "b", "s", "t", "\xD6\xD0", ""};
    const int index = bytes.below(8) - 1;
    MYPARA para{names[bytes.below(6)], 0.0, ""};
    const bool is_text = bytes.below(2) == 1;
    if (is_text) {
        para.strValue = bytes.line();
    } else {
        para.value = bytes.number();
    }
    e.SetPara(&para, index, is_text);
}

void read_all(CExpress& e) {
    (void)e.GetResult();
    (void)e.GetResultType();
    (void)e.GetStatu();
    (void)e.GetExpressionStatus();
    (void)e.GetErrorNumber();
    int count = 0;
    for (const VariableNode* node = e.GetVariableList(); node != nullptr; node = node->next)
        ++count;
    if (count != e.GetVariableNum()) __builtin_trap();
    for (int i = -1; i <= count + 1; ++i) {
        int type = 0;
        (void)e.GetVariable(i, &type);
        if (type < 0 || type > 2) __builtin_trap();
    }
}

void call(CExpress& e, Bytes& bytes) {
    switch (bytes.below(8)) {
        case 0:
            e.SetNumberOfPara(static_cast<int>(bytes.byte()) - 100);
            break;
        case 1:
            e.SetNumberOfPara(6);
            break;
        case 2:
            set_parameter(e, bytes);
            break;
        case 3:
            e.CalcExpression();
            break;
        case 4:
            e.VerifyExpression();
            break;
        case 5:
            e.ClearOld();
            break;
        default:
            e.SetExpression(bytes.line().c_str());
            e.CalcExpression();
            break;
    }
    read_all(e);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    CExpress evaluators[2];
    for (int calls = 0; calls < 64 && !bytes.empty(); ++calls)
        call(evaluators[bytes.below(2)], bytes);
    return 0;
}
