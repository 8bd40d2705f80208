// Numbers from texts, as the C library reads them, and texts from numbers and back.

#include <cmath>
#include <cstdlib>

#include <morandel.h>
#include "base/numbers.h"
#include "fuzz/bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const double number = bytes.number();
    const std::string text = bytes.line();

    // Without a payload in parentheses, which only the C library knows.
    const double read = morandel::text_to_number(text);
    const double wanted = std::strtod(text.c_str(), nullptr);
    if (std::isnan(wanted) ? !std::isnan(read) : std::memcmp(&read, &wanted, sizeof read) != 0) {
        __builtin_trap();
    }

    std::string written;
    if (morandel::number_to_text(number, -1, written) != morandel::ErrorNumber::none)
        __builtin_trap();
    if (std::isfinite(number)) {
        const double back = morandel::text_to_number(written);
        const double most = 1e-13 * std::max(1.0, std::abs(number));
        // Where the decimals round up to a whole, that is not carried over: 8.9999999999999999
        // is 8.
        const bool lost_carry = back == std::trunc(number);
        if (!(std::abs(back - number) <= most) && !lost_carry) __builtin_trap();
    }
    const double through = morandel::through_decimals(number);
    if (!(std::abs(through - number) <= 1e-20) && !std::isnan(number) && through != number) {
        __builtin_trap();
    }
    return 0;
}
