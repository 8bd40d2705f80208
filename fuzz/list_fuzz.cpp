// Scripts of calls on lists that share records, on the library and its model.

#include "fuzz/bytes.h"
#include "fuzz/growth.h"
#include "tests/pair.h"

namespace {

using morandel::pairs::Lists;

// A strcat whose result is pending doubles it with every attempt.
std::string formula_of(Bytes& bytes) {
    std::string formula = bytes.line();
    return strcats(formula.substr(std::min<std::size_t>(formula.size(), 1))) > 0 ? "1" : formula;
}

void call(Lists& lists, Bytes& bytes) {
    const auto list = static_cast<std::size_t>(bytes.below(Lists::count));
    const std::string name(1, static_cast<char>('a' + bytes.below(5)));
    switch (bytes.below(9)) {
        case 0:
            lists.append(list, 1, name, bytes.number(), "");
            break;
        case 1: {
            const int type = bytes.below(2);
            lists.append_string(list, type, name, bytes.line(), "1");
            break;
        }
        case 2:
            lists.remove(list, name);
            break;
        case 3:
            lists.free(list);
            break;
        case 4:
            lists.assign(list, static_cast<std::size_t>(bytes.below(Lists::count)));
            break;
        case 5:
            lists.rename(list, name, bytes.line());
            break;
        case 6:
            lists.calculate(list);
            break;
        default:
            lists.append(list, 0, name, 0.0, formula_of(bytes));
            break;
    }
    stop_at(lists.difference());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    Lists lists;
    for (int calls = 0; calls < 40 && !bytes.empty(); ++calls) call(lists, bytes);
    return 0;
}
