// The loops of all kernels, for one set of the processor's instructions. Sources that are compiled
// for different sets include this, each with a tag of its own, so that no two share code.

#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>

#include "arithmetic/operators.h"
#include "base/numbers.h"
#include "base/value.h"
#include "engine/block_kernels.h"
#include "language/operators.h"

namespace morandel {

template <unsigned checks>
constexpr Bits unkept(double left, double right) {
    return ((checks & check_left) != 0 ? unkept(left) : 0) |
           ((checks & check_right) != 0 ? unkept(right) : 0);
}

template <class Set, class Operation, unsigned checks>
bool compute_block(const double* left, const double* right, double* result, std::size_t count) {
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double value = Operation()(left[i], right[i]);
        wrong |= beyond(value, range_bound) | unkept<checks>(left[i], right[i]);
        result[i] = value;
    }
    return !is_set(wrong);
}

struct Negation {
    double operator()(double a, double /*b*/) const { return -a; }
};
// The root of a negative number is no number, and so out of range.
struct Root {
    double operator()(double a, double /*b*/) const { return std::sqrt(a); }
};
struct Not {
    double operator()(double a, double /*b*/) const { return a == 0.0 ? 1.0 : 0.0; }
};

template <class Set, unsigned checks>
bool divide_block(const double* left, const double* right, double* result, std::size_t count) {
    constexpr double least = division_guard;
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double value = left[i] / right[i];
        wrong |= beyond(value, range_bound) | (size_of(right[i]) - size_of(least)) |
                 unkept<checks>(left[i], right[i]);
        result[i] = value;
    }
    return !is_set(wrong);
}

template <class Set, class Relation, unsigned checks>
bool relate_block(const double* left, const double* right, double* result, std::size_t count) {
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        wrong |= unkept<checks>(left[i], right[i]);
        result[i] = Relation()(left[i], right[i]) ? 1.0 : 0.0;
    }
    return !is_set(wrong);
}

template <class Set>
bool are_all(const double* numbers, double number, std::size_t count) {
    Bits different = 0;
    for (std::size_t i = 0; i < count; ++i) {
        different |= std::bit_cast<Bits>(numbers[i]) ^ std::bit_cast<Bits>(number);
    }
    return different == 0;
}

// The same everywhere; where the processor fuses a product and a sum, in one step.
template <class Set>
double lost_by_product(double a, double b, double product) {
#ifdef __FMA__
    return std::fma(a, b, -product);
#else
    return product_error(a, b, product);
#endif
}

// The few squares that do not round clearly are marked, and computed by themselves.
template <class Set, unsigned checks>
bool square_block(const double* left, double* result, std::size_t count) {
    constexpr double mark = -1.0;  // which no square is
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double square = left[i] * left[i];
        const double error = lost_by_product<Set>(left[i], left[i], square);
        const double rounded = rounds_clearly(square, error) ? square : mark;
        wrong |= unkept<checks>(left[i], left[i]);
        result[i] = has_halves(left[i]) ? rounded : mark;
    }
    // Not a vector loop.
    for (std::size_t i = 0; i < count; ++i) {
        if (result[i] == mark) {
            result[i] = library_power(left[i], 2.0);
            wrong |= beyond(result[i], range_bound);
        }
    }
    return !is_set(wrong);
}

template <class Set, unsigned checks>
bool raise_block(const double* left, const double* right, double* result, std::size_t count) {
    Bits wrong = 0;
    if (are_all<Set>(right, 2.0, count))
        return square_block<Set, checks & check_left>(left, result, count);
    // Not a vector loop.
    for (std::size_t i = 0; i < count; ++i) {
        double value = left[i];
        raise(value, right[i]);
        wrong |= beyond(value, range_bound) | unkept<checks>(left[i], right[i]);
        result[i] = value;
    }
    return !is_set(wrong);
}

struct KernelRow {
    char code;
    BlockKernel kernel;
};

template <class Set, unsigned checks>
inline constexpr KernelRow kernel_rows[] = {
    {'+', compute_block<Set, std::plus<>, checks>},
    {'-', compute_block<Set, std::minus<>, checks>},
    {'*', compute_block<Set, std::multiplies<>, checks>},
    {'/', divide_block<Set, checks>},
    {'^', raise_block<Set, checks>},
    {code_negate, compute_block<Set, Negation, checks>},
    {'q', compute_block<Set, Root, checks>},
    {'j', compute_block<Set, Not, checks>},
    {code_and, relate_block<Set, std::logical_and<>, checks>},
    {code_or, relate_block<Set, std::logical_or<>, checks>},
    {code_ge, relate_block<Set, NotLess, checks>},
    {code_le, relate_block<Set, NotGreater, checks>},
    {code_ne, relate_block<Set, std::not_equal_to<>, checks>},
    {'<', relate_block<Set, Less, checks>},
    {'>', relate_block<Set, Greater, checks>},
    {'=', relate_block<Set, Equal, checks>},
};

template <class Set, unsigned checks>
constexpr KernelsByCode make_kernels() {
    KernelsByCode by_code{};
    for (const KernelRow& row : kernel_rows<Set, checks>)
        by_code[static_cast<unsigned char>(row.code)] = row.kernel;
    return by_code;
}

template <class Set>
bool are_plain_block(const double* numbers, std::size_t count) {
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) wrong |= unkept(numbers[i]);
    return !is_set(wrong);
}

// One where a number without a sign is below a bound, else the other; both are computed.
constexpr double choose(double number, double bound, double below, double other) {
    const Bits is_below = Bits{0} - ((size_of(number) - size_of(bound)) >> 63);
    return std::bit_cast<double>((std::bit_cast<Bits>(below) & is_below) |
                                 (std::bit_cast<Bits>(other) & ~is_below));
}

// As through_decimals does it.
template <class Set>
bool keep_block(const double* numbers, double* kept, std::size_t count) {
    constexpr double whole = 0x1p52;  // from here on numbers are whole
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double size = std::abs(numbers[i]);
        const double units = size * units_of_20_decimals;
        const double rounded = (units + whole) - whole;
        const double nearest = choose(units, whole, rounded, units);
        const double lost = lost_by_product<Set>(size, units_of_20_decimals, units);
        const double above = units - nearest == (lost > 0.0 ? 0.5 : 2.0) ? 1.0 : 0.0;
        const double below = nearest - units == (lost < 0.0 ? 0.5 : 2.0) ? 1.0 : 0.0;
        const double count_of_units = (nearest + above) - below;
        const double small = count_of_units / units_of_20_decimals;
        kept[i] = std::copysign(choose(size, kept_by_20_decimals, small, size), numbers[i]);
        wrong |= beyond(numbers[i], range_bound);
    }
    return !is_set(wrong);
}

template <class Set>
constexpr BlockKernels kernels_of_set{
    {make_kernels<Set, check_none>(), make_kernels<Set, check_left>(),
     make_kernels<Set, check_right>(), make_kernels<Set, check_left | check_right>()},
    are_plain_block<Set>,
    keep_block<Set>};

}  // namespace morandel
