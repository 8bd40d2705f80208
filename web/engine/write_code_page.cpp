// Writes the characters of code page 936 as this system has them into a file, for systems that have
// none: the single bytes from 0x80 on, then all pairs.

#include <fstream>

#include "formula/system_code_page.h"

int main(int count, char** arguments) {
    morandel::formula::SystemCodePage system;
    if (count != 2 || !system.is_known()) return 1;
    std::ofstream out(arguments[1]);
    const auto write = [&](const char* bytes, std::size_t size) {
        out << static_cast<unsigned>(system.convert(bytes, size)) << ',';
    };
    for (unsigned single = 0x80; single < 0x100; ++single) {
        const char byte = static_cast<char>(single);
        write(&byte, 1);
    }
    for (unsigned lead = 0x81; lead < 0xFF; ++lead) {
        out << '\n';
        for (unsigned second = 0x40; second < 0xFF; ++second) {
            const char pair[] = {static_cast<char>(lead), static_cast<char>(second)};
            write(pair, 2);
        }
    }
    out << '\n';
    return out.flush() ? 0 : 1;
}
