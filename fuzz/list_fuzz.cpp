// Scripts of calls on lists that share records.

#include <array>

#include "fuzz/bytes.h"
#include "morandel.h"

namespace {

void call(std::array<CVariableExpressList, 3>& lists, Bytes& bytes) {
    CVariableExpressList& list = lists[static_cast<std::size_t>(bytes.below(3))];
    const std::string name(1, static_cast<char>('a' + bytes.below(5)));
    switch (bytes.below(9)) {
        case 0:
            list.Append(1, name.c_str(), bytes.number(), "");
            break;
        case 1:
            list.AppendString(bytes.below(2), name.c_str(), bytes.line().c_str(), "1");
            break;
        case 2:
            list.DeleteOneNodeByName(name.c_str());
            break;
        case 3:
            list.Free();
            break;
        case 4:
            list = lists[static_cast<std::size_t>(bytes.below(3))];
            break;
        case 5:
            if (CVariableExpress* record = list.FindByName(name.c_str()))
                record->SetName(bytes.line().c_str());
            break;
        case 6:
            (void)list.Cal();
            break;
        default:
            list.Append(0, name.c_str(), 0.0, bytes.line().c_str());
            break;
    }
    int records = 0;
    for (CVariableExpress* r = list.GetHead(); r != nullptr; r = r->GetNext()) ++records;
    if ((records == 0) != (list.FindByName("a") == nullptr)) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    std::array<CVariableExpressList, 3> lists;
    for (int calls = 0; calls < 40 && !bytes.empty(); ++calls) call(lists, bytes);
    return 0;
}
