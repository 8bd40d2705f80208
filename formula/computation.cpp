// Carries out recordings.

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "engine/machine.h"
#include "engine/pending.h"
#include "formula/reading.h"
#include "formula/recording.h"

namespace morandel::formula {
PendingGuard::PendingGuard() : m_kept(std::exchange(g_NumArray(), ArgumentStack<double>())) {}

PendingGuard::~PendingGuard() { g_NumArray() = std::move(m_kept); }

// Where a machine runs.
struct Computation::Room {
    Registers registers;
    Pending pending;
    ArgumentStack<double> numbers;
    Verdict verdict;
    Machine machine{registers, pending, verdict.faults};
};

Computation::Computation(const Recording& recording) : m_recording(recording) {
    std::fill_n(m_numbers.begin(), recording.m_names.size(), 0.0);
    m_numbers[Registers::nothing] = 0.0;
    for (const auto& [place, value] : recording.m_constants) m_numbers[place] = value.number;
    if (!recording.m_program.is_numeric) (void)room();
}

Computation::~Computation() = default;

Computation::Room& Computation::room() {
    if (m_room != nullptr) return *m_room;
    auto made = std::make_unique<Room>();
    made->registers.make_room(m_recording.m_formula.size());
    for (std::size_t i = 0; i < m_recording.m_names.size(); ++i) {
        made->registers.set(i, {0.0, {}, m_recording.m_texts[i] ? type_text : type_number});
    }
    for (const auto& [place, value] : m_recording.m_constants) made->registers.set(place, value);
    m_room = std::move(made);
    return *m_room;
}

void Computation::set_number(std::size_t name, double number) {
    m_numbers[name] = through_decimals(number);
}

// A program of numbers reads no text.
void Computation::set_text(std::size_t name, std::string_view bytes) {
    if (m_room != nullptr) m_room->registers.set(name, {0.0, bytes, type_text});
}

bool Computation::is_in_range() const {
    return std::all_of(m_numbers.begin(),
                       m_numbers.begin() + static_cast<std::ptrdiff_t>(m_recording.m_names.size()),
                       [](double number) { return in_range(number); });
}

bool Computation::run() {
    const Program& program = m_recording.m_program;
    if (program.is_numeric && is_in_range() && !m_recording.m_fault &&
        run_numbers(program, m_numbers.data())) {
        m_value = {m_numbers[program.result], {}, program.type};
        return true;
    }
    return run_program(program);
}

bool Computation::run_program(const Program& program) {
    Room& at = room();
    for (std::size_t i = 0; i < m_recording.m_names.size(); ++i) {
        if (!m_recording.m_texts[i]) at.registers.numbers()[i] = m_numbers[i];
    }
    at.numbers.clear();
    at.pending.clear();
    at.verdict.faults.forget();
    if (m_recording.m_fault) at.verdict.faults.serror(m_recording.m_fault->number);
    m_value = at.machine.run(program, at.numbers);
    return at.verdict.status != 0;
}

Fault Computation::fault() {
    run_program(m_recording.m_program);
    const int number = room().verdict.faults.m_ErrorNumber;
    Fault fault{number, MORANDEL_REASON_NUMBERED, {}};
    if (const auto step = failed_step(number)) {
        fault.where = m_recording.places_of_steps()[m_recording.m_origins[*step]];
    } else if (m_recording.m_fault) {
        fault.where = m_recording.m_fault->where;
    }
    return fault;
}

// The last one that raised the error. A fault of another number, put between two steps, stays
// where no step after it raises one.
std::optional<std::size_t> Computation::failed_step(int number) {
    const std::vector<Step>& steps = m_recording.m_program.steps;
    const Error mark = number == static_cast<int>(Error::bad_expression) ? Error::value_missing
                                                                         : Error::bad_expression;
    Program marked = m_recording.m_program;
    const auto fails_after = [&](std::size_t count) {
        const auto place = static_cast<std::ptrdiff_t>(count);
        marked.steps = steps;
        marked.steps.insert(marked.steps.begin() + place,
                            {StepKind::serror, 0, static_cast<Register>(mark), 0, 0});
        run_program(marked);
        return room().verdict.faults.m_ErrorNumber != static_cast<int>(mark);
    };
    if (!fails_after(0)) return std::nullopt;
    std::size_t failing = 0;  // so many steps first, and one still fails
    std::size_t all = steps.size();
    while (all - failing > 1) {
        const std::size_t middle = failing + (all - failing) / 2;
        (fails_after(middle) ? failing : all) = middle;
    }
    return failing;
}

}  // namespace morandel::formula
