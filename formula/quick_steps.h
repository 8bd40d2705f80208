// What the instructions of quick code do, and which of them does it for a step.

#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "arithmetic/operators.h"
#include "base/numbers.h"
#include "base/value.h"
#include "engine/block_kernels.h"
#include "language/functions.h"
#include "language/operators.h"

namespace morandel::formula {

struct Instruction;

// Carries out an instruction on the number before it, and those after it. Numbers that are needed
// later are kept one upon another. Gives a NaN where one gives up.
using Carry = double (*)(double before, const Instruction* at, const double* names, double* kept);

struct Instruction {
    Carry carry;
    double constant = 0.0;
    std::uint16_t left = 0;  // places of names
    std::uint16_t right = 0;
};

inline constexpr double given_up = std::numeric_limits<double>::quiet_NaN();

// Compilers make a jump of it.
inline double go_on(double value, const Instruction* at, const double* names, double* kept) {
    if (!is_ordinary(value)) return given_up;
    return at[1].carry(value, at + 1, names, kept);
}

// The beginning. There are many that differ in nothing that counts, so that formulas begin with
// different ones: by which one it was, the processor foretells what follows.
template <std::size_t which>
double begin(double /*before*/, const Instruction* at, const double* names, double* kept) {
    return at->carry(static_cast<double>(which), at, names, kept);
}

template <std::size_t... which>
constexpr auto make_beginnings(std::index_sequence<which...>) {
    return std::array<Carry, sizeof...(which)>{begin<which>...};
}

inline constexpr auto beginnings = make_beginnings(std::make_index_sequence<64>());

// The end, where it counts that parameters keep all names' values as they are, see is_plain. That
// is asked last, when the processor has seen enough to foretell which of these it comes to.
template <std::size_t count>
double finish(double before, const Instruction* /*at*/, const double* names, double* /*kept*/) {
    Bits wrong = 0;
    for (std::size_t i = 0; i < count; ++i) wrong |= unkept(names[i]);
    return is_set(wrong) ? given_up : before;
}

// For any count of names, which stands in the instruction.
inline double finish_with_many(double before, const Instruction* at, const double* names,
                               double* /*kept*/) {
    return block_kernels().are_plain(names, at->left) ? before : given_up;
}

inline constexpr std::array<Carry, 9> finish_carries = {
    finish<0>, finish<1>, finish<2>, finish<3>, finish<4>,
    finish<5>, finish<6>, finish<7>, finish<8>,
};

// Where the operands of a step come from.
enum class Form : std::uint8_t {
    before_name,
    before_constant,
    name_before,
    constant_before,
    kept_before,
    // Those keep the number before.
    name_name,
    name_constant,
    constant_name,
};
inline constexpr std::size_t forms = 8;

template <char code>
double compute(double left, double right) {
    if constexpr (code == '+') {
        return left + right;
    } else if constexpr (code == '-') {
        return left - right;
    } else if constexpr (code == '*') {
        return left * right;
    } else if constexpr (code == '/') {
        return std::abs(right) < division_guard ? given_up : left / right;
    } else {
        (void)operator_of_code(code)->number(left, right);
        return left;
    }
}

template <char code, Form form>
double carry_out(double before, const Instruction* at, const double* names, double* kept) {
    double left = before;
    double right = before;
    if constexpr (form == Form::before_name) right = names[at->right];
    if constexpr (form == Form::before_constant) right = at->constant;
    if constexpr (form == Form::name_before) left = names[at->left];
    if constexpr (form == Form::constant_before) left = at->constant;
    if constexpr (form == Form::kept_before) left = *--kept;
    if constexpr (form >= Form::name_name) *kept++ = before;
    if constexpr (form == Form::name_name || form == Form::name_constant) left = names[at->left];
    if constexpr (form == Form::name_name || form == Form::constant_name) right = names[at->right];
    if constexpr (form == Form::name_constant) right = at->constant;
    if constexpr (form == Form::constant_name) left = at->constant;
    return go_on(compute<code>(left, right), at, names, kept);
}

// Two steps, such as that of "a*b" and that which adds it to the number before.
template <char code, char inner_code, Form inner_form>
double carry_out_two(double before, const Instruction* at, const double* names, double* kept) {
    const double right = inner_form == Form::name_name ? names[at->right] : at->constant;
    const double inner = compute<inner_code>(names[at->left], right);
    if (!is_ordinary(inner)) return given_up;
    return go_on(compute<code>(before, inner), at, names, kept);
}

inline double load_name(double before, const Instruction* at, const double* names, double* kept) {
    *kept = before;
    return at[1].carry(names[at->left], at + 1, names, kept + 1);
}

inline double negate(double before, const Instruction* at, const double* names, double* kept) {
    return at[1].carry(-before, at + 1, names, kept);
}

template <NumberFunction function>
double call(double value) {
    return function(value) == Error::none ? value : given_up;
}
// Errors are what such a root is, and no number.
template <>
inline double call<square_root>(double value) {
    return std::sqrt(value);
}

// A function of the number before, or of a name.
template <NumberFunction function>
double carry_out_function(double before, const Instruction* at, const double* names, double* kept) {
    return go_on(call<function>(before), at, names, kept);
}
template <NumberFunction function>
double carry_out_function_of_name(double before, const Instruction* at, const double* names,
                                  double* kept) {
    *kept = before;
    return go_on(call<function>(names[at->left]), at, names, kept + 1);
}

struct FunctionCarries {
    NumberFunction function;
    Carry of_before;
    Carry of_name;
};

template <NumberFunction function>
inline constexpr FunctionCarries function_carries = {function, carry_out_function<function>,
                                                     carry_out_function_of_name<function>};

inline constexpr FunctionCarries all_function_carries[] = {
    function_carries<sine>,
    function_carries<cosine>,
    function_carries<tangent>,
    function_carries<cotangent>,
    function_carries<square_root>,
    function_carries<arc_sine>,
    function_carries<arc_cosine>,
    function_carries<arc_tangent>,
    function_carries<arc_cotangent>,
    function_carries<natural_logarithm>,
    function_carries<decimal_logarithm>,
    function_carries<integer_part>,
    function_carries<decimal_part>,
    function_carries<logical_not>,
};

// A square that does not round clearly. It stands apart, so that those that do save no registers.
double carry_out_library_square(double base, const Instruction* at, const double* names,
                                double* kept);

// A power of 2, of a name or of the number before.
template <Form form>
double carry_out_square(double before, const Instruction* at, const double* names, double* kept) {
    double base = before;
    if constexpr (form == Form::name_constant) {
        *kept++ = before;
        base = names[at->left];
    }
    const double square = base * base;
    if (!has_halves(base) || !rounds_clearly(square, product_error(base, base, square))) {
        return carry_out_library_square(base, at, names, kept);
    }
    return at[1].carry(square, at + 1, names, kept);
}

struct StepCarries {
    char code = 0;
    std::array<Carry, forms> by_form{};
};

template <char code>
inline constexpr StepCarries step_carries = {
    code,
    {carry_out<code, Form::before_name>, carry_out<code, Form::before_constant>,
     carry_out<code, Form::name_before>, carry_out<code, Form::constant_before>,
     carry_out<code, Form::kept_before>, carry_out<code, Form::name_name>,
     carry_out<code, Form::name_constant>, carry_out<code, Form::constant_name>}};

inline constexpr StepCarries all_step_carries[] = {
    step_carries<'+'>,      step_carries<'-'>,     step_carries<'*'>,     step_carries<'/'>,
    step_carries<'^'>,      step_carries<'>'>,     step_carries<'<'>,     step_carries<'='>,
    step_carries<code_and>, step_carries<code_or>, step_carries<code_ge>, step_carries<code_le>,
    step_carries<code_ne>,
};

// What becomes of an instruction where its result is the right side of a step that is carried out
// next.
struct JoinedCarry {
    char code;
    Carry inner;
    Carry joined;
};

template <char code, char inner_code, Form form>
inline constexpr JoinedCarry joined_carry = {code, carry_out<inner_code, form>,
                                             carry_out_two<code, inner_code, form>};

inline constexpr JoinedCarry joined_carries[] = {
    joined_carry<'+', '*', Form::name_name>, joined_carry<'+', '*', Form::name_constant>,
    joined_carry<'-', '*', Form::name_name>, joined_carry<'-', '*', Form::name_constant>,
    joined_carry<'+', '/', Form::name_name>, joined_carry<'+', '/', Form::name_constant>,
    joined_carry<'-', '/', Form::name_name>, joined_carry<'-', '/', Form::name_constant>,
};

}  // namespace morandel::formula
