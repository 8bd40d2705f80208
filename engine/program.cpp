#include "engine/program.h"

#include <cmath>

#include "engine/arithmetic.h"

namespace morandel {

namespace {

// Not beyond the range, and no NaN, whose sign depends on the order of operands.
bool is_ordinary(double number) {
    return std::abs(number) <= range_bound;
}

}  // namespace

const double* Program::append(Operation operation, char code, const double* left,
                              const double* right) {
    if (!join_product(operation, left, right)) {
        const int form = static_cast<int>(operation) + (is_result(left, 1) ? 1 : 0);
        m_step[m_steps++] = {static_cast<Operation>(form), code, left, right};
    }
    return &m_result[m_steps - 1];
}

// In a sum of products, what each adds is computed and added in one step.
bool Program::join_product(Operation operation, const double* left, const double* right) {
    if (operation != Operation::add && operation != Operation::subtract) return false;
    if (!is_result(right, 1) || !is_result(left, 2)) return false;
    Step& product = m_step[m_steps - 1];
    if (product.operation != Operation::multiply) return false;
    product.operation = operation == Operation::add ? Operation::add_product_to_last
                                                    : Operation::subtract_product_from_last;
    return true;
}

bool Program::run(double& result) {
    double last = 0.0;
    double computed = 0.0;  // so that last has no address and stays in a register
    const Step* const end = m_step.data() + m_steps;
    double* place = m_result.data();
    for (const Step* step = m_step.data(); step != end; ++step, ++place) {
        switch (step->operation) {
            case Operation::add:
                last = *step->left;
                [[fallthrough]];
            case Operation::add_to_last:
                last += *step->right;
                break;
            case Operation::subtract:
                last = *step->left;
                [[fallthrough]];
            case Operation::subtract_from_last:
                last -= *step->right;
                break;
            case Operation::multiply:
                last = *step->left;
                [[fallthrough]];
            case Operation::multiply_last:
                last *= *step->right;
                break;
            case Operation::divide:
                last = *step->left;
                [[fallthrough]];
            case Operation::divide_last:
                computed = last;
                if (combine('/', computed, *step->right) != Error::none) return false;
                last = computed;
                break;
            case Operation::power:
                last = *step->left;
                [[fallthrough]];
            case Operation::power_of_last:
                computed = last;
                combine('^', computed, *step->right);  // which has no errors
                last = computed;
                break;
            case Operation::relation:
                last = *step->left;
                [[fallthrough]];
            case Operation::relation_of_last:
                last = holds(step->code, last, *step->right) ? 1.0 : 0.0;
                break;
            case Operation::function:
                last = *step->left;
                [[fallthrough]];
            case Operation::function_of_last:
                computed = last;
                if (apply_function(step->code, computed) != Error::none) return false;
                last = computed;
                break;
            case Operation::add_product_to_last:
                computed = *step->left * *step->right;
                if (!is_ordinary(computed)) return false;
                last += computed;
                break;
            case Operation::subtract_product_from_last:
                computed = *step->left * *step->right;
                if (!is_ordinary(computed)) return false;
                last -= computed;
                break;
        }
        if (!is_ordinary(last)) return false;
        *place = last;
    }
    result = *m_answer;
    return true;
}

}  // namespace morandel
