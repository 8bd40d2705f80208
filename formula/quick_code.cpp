#include "formula/quick_code.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

namespace morandel::formula {
namespace {

// Turns steps into instructions, in their order. Results are the operands of steps after them, the
// last one first, so one is at hand and those before it are kept.
class Lowering {
  public:
    explicit Lowering(std::span<const Blocks::Constant> constants) : m_constants(constants) {}

    // False where there is no code for it.
    [[nodiscard]] bool add(const Step& step) {
        const bool is_added = step.kind == StepKind::unary ? add_of_one(step) : add_of_two(step);
        m_before = step.result;
        return is_added && m_most_kept <= QuickCode::most_kept;
    }
    [[nodiscard]] bool finish(Register result, std::size_t names) {
        const bool is_many = names >= finish_carries.size();
        add(is_many ? finish_with_many : finish_carries[names]).left =
            static_cast<std::uint16_t>(names);
        return result == m_before;
    }
    std::vector<Instruction> take() { return std::move(m_instructions); }

  private:
    enum class Source { before, kept, name, constant, none };

    [[nodiscard]] auto find_constant(Register place) const {
        return std::ranges::find(m_constants, place, &Blocks::Constant::place);
    }
    [[nodiscard]] Source source_of(Register place) const {
        if (place < Registers::parameters) return Source::name;
        if (place == m_before) return Source::before;
        if (!m_kept.empty() && place == m_kept.back()) return Source::kept;
        return find_constant(place) != m_constants.end() ? Source::constant : Source::none;
    }

    Instruction& add(Carry carry) { return m_instructions.emplace_back(Instruction{carry}); }

    void keep() {
        m_kept.push_back(m_before);
        m_most_kept = std::max(m_most_kept, m_kept.size());
    }

    bool add_of_one(const Step& step) {
        const Source source = source_of(step.left);
        if (source == Source::constant) return false;
        if (step.code == code_negate) {
            if (source == Source::name) {
                keep();
                add(load_name).left = step.left;
            }
            add(negate);
            return true;
        }
        const NumberFunction function = function_of_code(step.code)->body.number;
        const auto* carries =
            std::ranges::find(all_function_carries, function, &FunctionCarries::function);
        if (carries == std::end(all_function_carries)) return false;
        if (source == Source::name) {
            keep();
            add(carries->of_name).left = step.left;
        } else {
            add(carries->of_before);
        }
        return true;
    }

    bool add_of_two(const Step& step) {
        const auto* carries = std::ranges::find(all_step_carries, step.code, &StepCarries::code);
        if (carries == std::end(all_step_carries)) return false;
        const Source left = source_of(step.left);
        const Source right = source_of(step.right);
        const auto form = form_of(left, right);
        if (!form) return false;
        if (*form == Form::kept_before) {
            m_kept.pop_back();
            if (join(step.code)) return true;
        }
        if (*form >= Form::name_name) keep();
        Instruction& made = add(carries->by_form[static_cast<std::size_t>(*form)]);
        if (left == Source::constant) made.constant = find_constant(step.left)->number;
        if (right == Source::constant) made.constant = find_constant(step.right)->number;
        if (step.code == '^' && right == Source::constant && made.constant == 2.0) {
            made.carry = *form == Form::before_constant ? carry_out_square<Form::before_constant>
                                                        : carry_out_square<Form::name_constant>;
        }
        made.left = step.left;
        made.right = step.right;
        return true;
    }

    // None of two constants: what they give is one, unless it is an error.
    static std::optional<Form> form_of(Source left, Source right) {
        struct Row {
            Source left;
            Source right;
            Form form;
        };
        static constexpr Row rows[] = {
            {Source::before, Source::name, Form::before_name},
            {Source::before, Source::constant, Form::before_constant},
            {Source::name, Source::before, Form::name_before},
            {Source::constant, Source::before, Form::constant_before},
            {Source::kept, Source::before, Form::kept_before},
            {Source::name, Source::name, Form::name_name},
            {Source::name, Source::constant, Form::name_constant},
            {Source::constant, Source::name, Form::constant_name},
        };
        const auto* row = std::ranges::find_if(
            rows, [=](const Row& form) { return form.left == left && form.right == right; });
        return row == std::end(rows) ? std::nullopt : std::optional(row->form);
    }

    // Two steps as one instruction, where the one before works on what is given alone.
    bool join(char code) {
        Instruction& last = m_instructions.back();
        for (const JoinedCarry& row : joined_carries) {
            if (row.code != code || row.inner != last.carry) continue;
            last.carry = row.joined;
            return true;
        }
        return false;
    }

    std::span<const Blocks::Constant> m_constants;
    std::vector<Instruction> m_instructions;
    Register m_before = std::numeric_limits<Register>::max();
    std::vector<Register> m_kept;
    std::size_t m_most_kept = 0;
};

}  // namespace

double carry_out_library_square(double base, const Instruction* at, const double* names,
                                double* kept) {
    return go_on(library_power(base, 2.0), at, names, kept);
}

QuickCode::QuickCode(const Program& program, std::span<const Blocks::Constant> constants,
                     std::size_t names)
    : m_names(names) {
    if (program.steps.empty()) {
        const auto found = std::ranges::find(constants, program.result, &Blocks::Constant::place);
        if (found != constants.end()) m_constant = found->number;
        return;
    }
    Lowering lowering(constants);
    const bool is_lowered =
        std::ranges::all_of(program.steps, [&](const Step& step) { return lowering.add(step); });
    if (!is_lowered || !lowering.finish(program.result, names)) return;
    m_instructions = lowering.take();
    static std::atomic<std::size_t> count = 0;
    m_begin = beginnings[count++ % beginnings.size()];
}

}  // namespace morandel::formula
