// Scripts of public calls on two evaluators, of the library and its model: a byte chooses the call,
// its arguments follow.

#include "fuzz/bytes.h"
#include "fuzz/growth.h"
#include "tests/pair.h"

namespace {

using morandel::pairs::Evaluators;

void set_parameter(Evaluators& pair, Bytes& bytes) {
    static const char* const names[] = {"a", "b", "s", "t", "\xD6\xD0", ""};
    const int index = bytes.below(8) - 1;
    const std::string name = names[bytes.below(6)];
    if (bytes.below(2) == 1) {
        pair.set_text(index, name, bytes.line());
    } else {
        pair.set_number(index, name, bytes.number());
    }
}

void call(Evaluators& pair, Bytes& bytes) {
    switch (bytes.below(8)) {
        case 0:
            pair.set_count(static_cast<int>(bytes.byte()) - 100);
            break;
        case 1:
            pair.set_count(6);
            break;
        case 2:
            set_parameter(pair, bytes);
            break;
        case 3:
            pair.calculate();
            break;
        case 4:
            pair.verify();
            break;
        case 5:
            pair.clear();
            break;
        default: {
            const std::string formula = bytes.line();
            if (may_grow_large(formula)) break;
            pair.load(formula);
            pair.calculate();
            break;
        }
    }
    stop_at(pair.difference());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    Evaluators pairs[2];
    for (int calls = 0; calls < 64 && !bytes.empty(); ++calls) {
        Evaluators& pair = pairs[bytes.below(2)];
        call(pair, bytes);
        if (pending_bytes(pair) > large) break;
    }
    return 0;
}
