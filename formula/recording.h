// A formula of code page 936 read for names of known kinds, and its computation. This header with
// its two sources, reading.h and places.h are all of this folder that know how the engine works.

#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/floating_point.h"
#include "base/value.h"
#include "engine/blocks.h"
#include "engine/program.h"
#include "formula/quick_code.h"
#include "formula/report.h"
#include "language/characters.h"
#include "strfuncs/argument_stack.h"

namespace morandel::formula {

inline constexpr std::size_t most_names = Registers::parameters;

// Which of the names are texts.
using Kinds = std::bitset<most_names>;

// A fault of the formula: its number, or else its reason.
struct Fault {
    int number = -1;
    int reason = MORANDEL_REASON_NUMBERED;
    Extent where;
};

// A name that has no value, where it stands first.
struct FreeName {
    std::string name;
    int type = 0;  // expected by its place: 0 integer, 1 number, 2 text
    Extent where;
};

struct MiscountedCall {
    int reason;  // too few or too many
    Extent where;
};

// Never changes once it is made, so any number of threads may compute with it. Formula and names
// belong to the caller and stay where they are.
class Recording {
  public:
    Recording(const std::string& formula, const std::vector<std::string>& names, Kinds texts);
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    // Why the formula is refused; then there is nothing to compute.
    [[nodiscard]] const std::optional<Fault>& refusal() const { return m_refusal; }
    [[nodiscard]] const std::vector<FreeName>& free_names() const { return m_free_names; }
    [[nodiscard]] Kinds texts() const { return m_texts; }

    // What of the formula is not read, or read and not computed.
    struct Ignored {
        bool starts_token;
        Extent where;
    };
    [[nodiscard]] const std::optional<Ignored>& ignored() const { return m_ignored; }

    // The calls with fewer or more arguments than their functions read.
    [[nodiscard]] std::vector<MiscountedCall> miscounted_calls() const;
    // The calls that want more further arguments than there can be, whatever the values.
    [[nodiscard]] std::vector<Extent> short_calls() const;

    [[nodiscard]] bool uses(std::string_view name) const { return find_name(name).end != 0; }

    // The token that ends so many bytes from the start, or the one before it.
    [[nodiscard]] Extent token_ending_at(std::size_t end, bool before) const;
    // The last one that begins there or before and is wanted, or else the first that is.
    [[nodiscard]] Extent find_token(std::size_t begin,
                                    const std::function<bool(Extent)>& is_wanted) const;

    // What computes a formula of numbers, but for errors.
    [[nodiscard]] QuickCode quick_code() const;
    // How columns of numbers are computed; none where they have to be computed row by row.
    [[nodiscard]] std::unique_ptr<const Blocks> blocks() const;

  private:
    friend class Computation;
    struct Constant {
        Register place;
        Value value;
    };

    void keep_constants(const Registers& registers);
    void fold_constants(Registers& registers);
    [[nodiscard]] bool is_of_numbers() const { return m_program.is_numeric && !m_fault; }
    [[nodiscard]] std::vector<Blocks::Constant> numbers() const;
    [[nodiscard]] Fault silent_refusal() const;
    [[nodiscard]] Extent find_name(std::string_view name) const;
    [[nodiscard]] std::vector<Extent> places_of_steps() const;
    [[nodiscard]] std::vector<bool> known_kinds(bool of_texts) const;

    const std::string& m_formula;
    const std::vector<std::string>& m_names;
    Kinds m_texts;
    std::optional<Fault> m_refusal;
    std::optional<Fault> m_fault;  // of an accepted formula, all of whose computations fail
    std::vector<FreeName> m_free_names;
    std::optional<Ignored> m_ignored;
    Program m_program;
    std::vector<std::uint16_t> m_origins;  // of the steps: where they stand as they are recorded
    std::vector<Constant> m_constants;
};

// Computes a recording, each time as a new evaluator would. The floating-point environment is the
// default one while it lives.
class Computation {
  public:
    explicit Computation(const Recording& recording);
    ~Computation();
    Computation(const Computation&) = delete;
    Computation& operator=(const Computation&) = delete;

    // Values by place, of the recording's kinds. A text belongs to the caller.
    void set_number(std::size_t name, double number);
    void set_text(std::size_t name, std::string_view bytes);

    [[nodiscard]] const Recording& recording() const { return m_recording; }

    // False after an error.
    bool run();
    // What that gave; the text lives until the next run.
    [[nodiscard]] const Value& value() const { return m_value; }

    // The error of a run that failed, with its place, which is found by running again.
    [[nodiscard]] Fault fault();

  private:
    struct Room;

    [[nodiscard]] bool is_in_range() const;
    Room& room();
    bool run_program(const Program& program);
    [[nodiscard]] std::optional<std::size_t> failed_step(int number);

    DefaultFloatingPoint m_environment;
    const Recording& m_recording;
    Value m_value;
    std::unique_ptr<Room> m_room;  // where texts are concerned, or an error
    // Only what the program reads is written.
    std::array<double, Registers::first_free + longest_formula + 1> m_numbers;
};

// Keeps what the evaluators of this thread have left for one another, which any that is built
// empties, while one is built here.
class PendingGuard {
  public:
    PendingGuard();
    ~PendingGuard();
    PendingGuard(const PendingGuard&) = delete;
    PendingGuard& operator=(const PendingGuard&) = delete;

  private:
    ArgumentStack<double> m_kept;
};

}  // namespace morandel::formula
