// One formula with two numbers and a text, on new evaluators and on ones that have seen all before:
// the library must show what its model does.

#include <optional>

#include "fuzz/bytes.h"
#include "fuzz/growth.h"
#include "tests/pair.h"

namespace {

using morandel::pairs::Evaluators;

void declare(Evaluators& pair, double a, double b) {
    pair.set_count(3);
    pair.set_number(1, "a", a);
    pair.set_number(2, "rate", b);
    pair.set_text(3, "s", "a b,c");
}

void run(Evaluators& pair, const std::string& formula) {
    pair.load(formula);
    pair.calculate();
    stop_at(pair.difference());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::string formula = bytes.line();
    if (may_grow_large(formula)) return -1;
    const double a = bytes.number();
    const double b = bytes.number();
    // Not for ever: what formulas leave for one another can grow to megabytes a run.
    static std::optional<Evaluators> used;
    static int runs = 0;
    if (runs++ % 256 == 0 || pending_bytes(*used) > large) used.emplace();
    declare(*used, a, b);
    run(*used, formula);
    run(*used, formula);

    Evaluators fresh;  // empties the numbers that are pending
    declare(fresh, a, b);
    run(fresh, formula);
    fresh.calculate();
    stop_at(fresh.difference());
    return 0;
}
