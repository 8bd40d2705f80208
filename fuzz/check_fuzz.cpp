// Checks of many formulas on one object, with and without a reset between them, on the library and
// its model.

#include "fuzz/bytes.h"
#include "fuzz/growth.h"
#include "tests/pair.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    morandel::pairs::Checkers pair;
    pair.set_number(1, "a", 2.5);
    pair.set_text(2, "s", "text");
    for (int checks = 0; checks < 8 && !bytes.empty(); ++checks) {
        const int choice = bytes.below(8);
        if (choice < 4) pair.reset();
        const bool faulty = pair.check(bytes.line());
        if (choice < 4 && !faulty && !pair.library().m_errors.empty()) __builtin_trap();
        for (const CheckexpressionError& fault : pair.library().m_errors) {
            if (fault.nType < 0 || fault.nType > 4 || fault.nPosition < 0 || fault.nPosition > 512)
                __builtin_trap();
        }
        if (choice == 7) pair.count_commas();
        stop_at(pair.difference());
    }
    return 0;
}
