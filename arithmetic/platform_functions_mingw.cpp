// Angles are brought to an eighth of a turn by exact integers; from there the processor is exact.

#include <array>
#include <cstddef>
#include <cstdint>

#include "arithmetic/platform_functions.h"

namespace morandel::platform {
namespace {

static_assert(sizeof(long double) > sizeof(double), "the last step needs more bits than a double");

constexpr double eighth_of_a_turn = 0.7853981633974483;
constexpr long double quarter_of_a_turn = 1.57079632679489661923132169163975144L;
// The bits of 2 / pi after the point: for the greatest double, and as many again as the nearest of
// all doubles to a multiple of a quarter takes away.
constexpr std::uint32_t quarters_per_radian[] = {
    0xa2f9836e, 0x4e441529, 0xfc2757d1, 0xf534ddc0, 0xdb629599, 0x3c439041, 0xfe5163ab, 0xdebbc561,
    0xb7246e3a, 0x424dd2e0, 0x06492eea, 0x09d1921c, 0xfe1deb1c, 0xb129a73e, 0xe88235f5, 0x2ebb4484,
    0xe99c7026, 0xb45f7e41, 0x3991d639, 0x835339f4, 0x9c845f8b, 0xbdf9283b, 0x1ff897ff, 0xde05980f,
    0xef2f118b, 0x5a0a6d1f, 0x6d367ecf, 0x27cb09b7, 0x4f463f66, 0x9e5fea2d, 0x7527bac7, 0xebe5f17b,
    0x3d0739f7, 0x8a5292ea, 0x6bfb5fb1, 0x1f8d5d08, 0x56033046, 0xfc7b6bab, 0xf0cfbc20};

constexpr int word_bits = 32;
constexpr int double_bits = 53;
constexpr int words_used = 7;  // 224 bits: 53 of the angle, 62 that may vanish, 64 that are wanted

// An angle as quarters of a turn and what is left, an eighth of a turn at most on either side.
struct Reduced {
    unsigned quarters = 0;  // the last two bits count
    long double rest = 0.0L;
};

Reduced reduced(double angle) {
    if (!(std::abs(angle) > eighth_of_a_turn) || std::isinf(angle)) return {0, angle};
    int exponent = 0;
    const double fraction = std::frexp(std::abs(angle), &exponent);
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, double_bits));
    exponent -= double_bits;

    // What stands before those words makes whole turns.
    const int first = exponent > 2 ? (exponent - 2) / word_bits : 0;
    std::array<std::uint32_t, words_used + 2> product{};  // the lowest first
    for (std::size_t half = 0; half < 2; ++half) {
        const std::uint64_t factor = (mantissa >> (word_bits * half)) & 0xffffffffu;
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < words_used; ++i) {
            const std::uint64_t word =
                quarters_per_radian[static_cast<std::size_t>(first) + words_used - 1 - i];
            carry += product[i + half] + factor * word;
            product[i + half] = static_cast<std::uint32_t>(carry);
            carry >>= word_bits;
        }
        product[words_used + half] = static_cast<std::uint32_t>(carry);
    }

    // So many bits of it stand after the point.
    const int places = word_bits * (first + words_used) - exponent;
    const auto bit = [&product](int place) {
        const auto word = static_cast<std::size_t>(place / word_bits);
        return word < product.size() ? (product[word] >> (place % word_bits)) & 1u : 0u;
    };
    unsigned quarters = bit(places) + 2 * bit(places + 1);
    // From the middle between two quarters on, the rest is what the next one lacks.
    const unsigned above_middle = bit(places - 1);
    quarters += above_middle;
    int highest = places - 1;
    while (highest >= 0 && bit(highest) == above_middle) --highest;
    std::uint64_t digits = 0;
    for (int i = 0; i < 64; ++i) {
        const unsigned digit = highest - i >= 0 ? bit(highest - i) : above_middle;
        digits = digits << 1 | (digit ^ above_middle);
    }
    long double rest = std::ldexp(static_cast<long double>(digits), highest - 63 - places);
    if (above_middle != 0) rest = -rest;
    rest *= quarter_of_a_turn;
    if (angle < 0.0) return {0u - quarters, -rest};
    return {quarters, rest};
}

double sine_of(const Reduced& angle) {
    const long double value =
        (angle.quarters & 1u) == 0 ? std::sin(angle.rest) : std::cos(angle.rest);
    return static_cast<double>((angle.quarters & 2u) == 0 ? value : -value);
}

}  // namespace

double sine(double angle) { return sine_of(reduced(angle)); }

double cosine(double angle) {
    Reduced ahead = reduced(angle);
    ++ahead.quarters;
    return sine_of(ahead);
}

double tangent(double angle) {
    const Reduced at = reduced(angle);
    const long double value = std::tan(at.rest);
    return static_cast<double>((at.quarters & 1u) == 0 ? value : -1.0L / value);
}

}  // namespace morandel::platform
