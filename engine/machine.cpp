#include "engine/machine.h"

#include <algorithm>
#include <functional>

#include "language/functions.h"
#include "language/operators.h"

namespace morandel {
namespace {

// What no operator at hand does, by its row.
Error compute(const Step& step, double& value, double right) {
    if (step.kind == StepKind::unary) return function_of_code(step.code)->body.number(value);
    return operator_of_code(step.code)->number(value, right);
}

Error unary(char code, Value& value) {
    value.type = result_type(code);
    if (code != code_negate) return function_of_code(code)->body.number(value.number);
    value.number = -value.number;
    return Error::none;
}

Error atith(char code, Value& left, double right) {
    if (!in_range(left.number) || !in_range(right)) return Error::out_of_range;
    // Deliberate: to the power of 0, the type of the left side stays, a text too.
    if (code != '^' || right != 0.0) left.type = type_number;
    return operator_of_code(code)->number(left.number, right);
}

void MUL_Atith(char code, Value& left, const Value& right) {
    const Operator& row = *operator_of_code(code);
    if (row.texts != nullptr) {
        left.number = row.texts(left.text, right.text) ? 1.0 : 0.0;
    } else {
        row.number(left.number, right.number);
    }
    left.type = type_number;
}

ExtraArguments numbers_of(const FurtherArguments& further, const double* numbers) {
    ExtraArguments extra;
    std::ranges::transform(further.values, extra.values, [=](Register at) { return numbers[at]; });
    return extra;
}

}  // namespace

bool run_numbers(const Program& program, double* numbers) {
    // The result before is at hand sooner than it can be read again.
    double value = 0.0;
    Register place = Registers::nothing;
    for (const Step& step : program.steps) {
        if (step.left != place) value = numbers[step.left];
        const double right = numbers[step.right];
        // clang-format off
        switch (step.code) {
            case '+': value += right; break;
            case '-': value -= right; break;
            case '*': value *= right; break;
            case '^': raise(value, right); break;
            case '>': apply<Greater>(value, right); break;
            case '<': apply<Less>(value, right); break;
            case '=': apply<Equal>(value, right); break;
            case code_and: apply<std::logical_and<>>(value, right); break;
            case code_or: apply<std::logical_or<>>(value, right); break;
            case code_ge: apply<NotLess>(value, right); break;
            case code_le: apply<NotGreater>(value, right); break;
            case code_ne: apply<std::not_equal_to<>>(value, right); break;
            case code_negate: value = -value; break;
            case '/': if (divide(value, right) != Error::none) return false; break;
            default: if (compute(step, value, right) != Error::none) return false; break;
        }
        // clang-format on
        if (!is_ordinary(value)) return false;
        place = step.result;
        numbers[place] = value;
    }
    return true;
}

Value Machine::run(const Program& program, ArgumentStack<double>& numbers) {
    m_texts.clear();
    for (const Step& step : program.steps) {
        Value value = m_registers.value(step.left);
        switch (step.kind) {
            case StepKind::unary:
                m_faults.serror(unary(step.code, value));
                break;
            case StepKind::StringFunction: {
                const ExtraArguments extra =
                    numbers_of(program.further_arguments[step.right - 1U], m_registers.numbers());
                Call call{value,  extra, m_pending.m_TempStr, numbers, m_pending.first_argument,
                          m_texts};
                m_faults.serror(function_of_code(step.code)->body.routine(call));
                break;
            }
            case StepKind::atith:
                m_faults.serror(atith(step.code, value, m_registers.numbers()[step.right]));
                break;
            case StepKind::MUL_Atith:
                MUL_Atith(step.code, value, m_registers.value(step.right));
                break;
            case StepKind::first_argument:
                m_pending.first_argument.text = value.text;
                m_pending.first_argument.index = m_pending.m_TempStr.size();
                continue;
            case StepKind::further_argument:
                if (value.type == type_text) {
                    m_pending.push(value.text);
                } else {
                    numbers.push(value.number);
                }
                continue;
            case StepKind::serror:
                m_faults.serror(step.left);
                continue;
        }
        m_registers.set(step.result, value);
    }
    return m_registers.value(program.result);
}

}  // namespace morandel
