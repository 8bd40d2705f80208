// Where a program computes: a number, a text and a kind for each place that it reads or writes.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/value.h"
#include "language/characters.h"
#include "strfuncs/argument_stack.h"

namespace morandel {

// The place of an operand: of a parameter, a constant or a result.
using Register = std::uint16_t;

// Numbers stand by themselves, since most programs are of numbers alone.
class Registers {
  public:
    static constexpr Register parameters = 50;          // the first ones
    static constexpr Register nothing = parameters;     // the operand that is missing: 0, no text
    static constexpr Register not_given = nothing + 1;  // a further argument that is missing
    static constexpr Register first_free = not_given + 1;

    Registers() {
        set(nothing, {});
        set(not_given, {ExtraArguments::not_given, {}, type_number});
    }
    Registers(const Registers&) = delete;
    Registers& operator=(const Registers&) = delete;

    // Room for what a formula of that many bytes can need, one constant or result a token. What
    // parameters hold stays, all else goes.
    void make_room(std::size_t formula_length) {
        if (first_free + formula_length < few || m_many != nullptr) return;
        m_many = std::make_unique_for_overwrite<Places<most>>();
        std::copy_n(m_numbers, first_free, m_many->numbers.data());
        std::copy_n(m_rest, first_free, m_many->rest.data());
        m_numbers = m_many->numbers.data();
        m_rest = m_many->rest.data();
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

    template <std::size_t size>
    struct Places {
        std::array<double, size> numbers;
        std::array<Rest, size> rest;
    };

    // Most formulas do with few places.
    static constexpr std::size_t few = 128;
    static constexpr std::size_t most = first_free + longest_formula + 1;
    Places<few> m_few;
    std::unique_ptr<Places<most>> m_many;
    double* m_numbers = m_few.numbers.data();
    Rest* m_rest = m_few.rest.data();
};

}  // namespace morandel
