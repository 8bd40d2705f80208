#include "engine/program.h"

#include "engine/arithmetic.h"

namespace morandel {
namespace {

template <char code>
bool combine_in_range(double& left, double right) {
    return in_range(left) && in_range(right) && combine(code, left, right) == Error::none;
}

}  // namespace

bool Program::run(double& result) const {
    std::array<double, longest_formula / 2 + 1> numbers;
    double* below = numbers.data();
    double top = 0.0;  // what the first load pushes is not looked at
    for (const Step* step = m_step.data();; ++step) {
        bool computed = true;
        double right = 0.0;
        const auto operand = [&] { return *step->operand; };
        const auto take_top = [&] {
            const double taken = top;
            top = *--below;
            return taken;
        };
        switch (step->operation) {
            case Operation::end:
                result = top;
                return true;
            case Operation::load:
                *below++ = top;
                top = operand();
                break;
            case Operation::unary:
                computed = apply_function(step->code, top) == Error::none;
                break;
            case Operation::add:
                computed = combine_in_range<'+'>(top, operand());
                break;
            case Operation::subtract:
                computed = combine_in_range<'-'>(top, operand());
                break;
            case Operation::multiply:
                computed = combine_in_range<'*'>(top, operand());
                break;
            case Operation::divide:
                computed = combine_in_range<'/'>(top, operand());
                break;
            case Operation::power:
                computed = combine_in_range<'^'>(top, operand());
                break;
            case Operation::relation:
                top = holds(step->code, top, operand()) ? 1.0 : 0.0;
                break;
            case Operation::add_below:
                right = take_top();
                computed = combine_in_range<'+'>(top, right);
                break;
            case Operation::subtract_below:
                right = take_top();
                computed = combine_in_range<'-'>(top, right);
                break;
            case Operation::multiply_below:
                right = take_top();
                computed = combine_in_range<'*'>(top, right);
                break;
            case Operation::divide_below:
                right = take_top();
                computed = combine_in_range<'/'>(top, right);
                break;
            case Operation::power_below:
                right = take_top();
                computed = combine_in_range<'^'>(top, right);
                break;
            case Operation::relation_below:
                right = take_top();
                top = holds(step->code, top, right) ? 1.0 : 0.0;
                break;
        }
        if (!computed) return false;
    }
}

}  // namespace morandel
