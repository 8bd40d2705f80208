// Where a program computes: a number, a text and a kind for each place that it reads or writes.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "base/value.h"

namespace morandel {

// The place of an operand: of a parameter, a constant or a result.
using Register = std::uint16_t;

// Numbers stand by themselves, since most programs are of numbers alone.
class Registers {
  public:
    static constexpr Register parameters = 50;       // the first ones
    static constexpr Register nothing = parameters;  // the operand that is missing: 0, no text
    static constexpr Register first_free = nothing + 1;

    Registers() { set(nothing, {}); }
    Registers(const Registers&) = delete;
    Registers& operator=(const Registers&) = delete;

    // Room for what a formula of that many bytes can need, one constant or result a token. What
    // parameters hold stays, all else goes.
    void make_room(std::size_t formula_length) {
        const std::size_t wanted = first_free + formula_length + 1;
        if (wanted > m_size) grow(wanted);
    }

    [[nodiscard]] double* numbers() { return m_numbers; }
    [[nodiscard]] ResultType kind(std::size_t place) const { return m_rest[place].kind; }
    void set_kind(std::size_t place, ResultType kind) { m_rest[place].kind = kind; }

    [[nodiscard]] Value value(std::size_t place) const {
        const Rest& rest = m_rest[place];
        return {m_numbers[place], {rest.text, rest.text_size}, rest.kind};
    }
    void set(std::size_t place, const Value& value) {
        m_numbers[place] = value.number;
        m_rest[place] = {value.text.data(), value.text.size(), value.type};
    }

  private:
    // Left as it is found until it is set.
    struct Rest {
        const char* text;
        std::size_t text_size;
        ResultType kind;
    };

    void grow(std::size_t size) {
        auto numbers = std::make_unique_for_overwrite<double[]>(size);
        auto rest = std::make_unique_for_overwrite<Rest[]>(size);
        std::copy_n(m_numbers, first_free, numbers.get());
        std::copy_n(m_rest, first_free, rest.get());
        m_many_numbers = std::move(numbers);
        m_many_rest = std::move(rest);
        m_numbers = m_many_numbers.get();
        m_rest = m_many_rest.get();
        m_size = size;
    }

    // Most formulas do with these.
    static constexpr std::size_t few = 128;
    std::array<double, few> m_few_numbers;
    std::array<Rest, few> m_few_rest;

    std::unique_ptr<double[]> m_many_numbers;
    std::unique_ptr<Rest[]> m_many_rest;
    double* m_numbers = m_few_numbers.data();
    Rest* m_rest = m_few_rest.data();
    std::size_t m_size = few;
};

}  // namespace morandel
