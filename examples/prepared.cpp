// C++17 and later by the C interface, with any compiler: formula.hpp has all its code in itself.
// c++ -std=c++17 prepared.cpp $(pkg-config --cflags --libs morandel)
// x86_64-w64-mingw32-g++-posix -std=c++17 -static -I../include prepared.cpp ../lib/Morandel10.lib
// There Morandel10.dll lies beside the program.

#include <morandel/formula.hpp>

#include <cstdio>
#include <vector>

int main() {
    const morandel::Formula total("price*qty", {"price", "qty"});
    std::printf("total = %g\n", total(12.5, 3).number());

    // One price for all rows, a quantity for each.
    const std::vector<double> quantities{1, 2, 4};
    std::vector<double> totals;
    total.columns({12.5, quantities}, totals);
    std::printf("totals = %g, %g, %g\n", totals[0], totals[1], totals[2]);

    try {
        const morandel::Formula refused("(price*qty");
    } catch (const morandel::Error& error) {
        if (error.position()) std::printf("character %u: ", unsigned(error.position()->character));
        std::printf("%s\n", error.english().c_str());
    }
}
