// A formula made ready: its text, the names that values are given for, and what is computed of
// them. It never changes, so any number of threads may compute with it.

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/code_page.h"
#include "formula/recording.h"
#include "formula/report.h"

namespace morandel::formula {

// A name as a caller gives it.
struct GivenName {
    std::string_view text;
    int type = MORANDEL_DEDUCED;
};

struct Name {
    std::string text;  // as callers see it
    int type = MORANDEL_NUMBER;
};

// A computed value; its text as callers see it.
class Result {
  public:
    int type = MORANDEL_INTEGER;
    double number = 0.0;

    // Where it is a text.
    [[nodiscard]] const std::string& text() const { return m_texts[m_current]; }
    [[nodiscard]] std::string& text() { return m_texts[m_current]; }
    // The text before stays until the next time, since values of what comes may lie in it.
    void clear() {
        type = MORANDEL_INTEGER;
        number = 0.0;
        m_current = 1 - m_current;
        text().clear();
    }

  private:
    std::array<std::string, 2> m_texts;
    std::size_t m_current = 0;
};

// What the checker finds.
struct CheckFault {
    int kind;
    int operand;
    int wants;  // a type; MORANDEL_DEDUCED where that is not checked
    std::string name;
    Extent where;  // of the operator or function
    morandel_position position;
    bool is_own;  // the place is what the checker tells; where it is not, its list is another's
};

class Prepared {
  public:
    // At most fifty names; without a list, all that the formula uses. Throws Refused.
    Prepared(std::string_view text, std::optional<std::span<const GivenName>> names, int flags);
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;

    [[nodiscard]] const std::vector<Name>& names() const { return m_names; }
    [[nodiscard]] const std::vector<Name>& free_names() const { return m_free_names; }
    // The place of a name, or -1.
    [[nodiscard]] int find_name(std::string_view text) const;

    // Into a result that is cleared. Throws Refused.
    void compute(std::span<const morandel_value> values, Result& result) const;
    // The same, but says only that it failed.
    [[nodiscard]] bool try_compute(std::span<const morandel_value> values, Result& result) const;
    [[nodiscard]] bool compute_numbers(std::span<const double> values, double& result) const;
    // The same for most formulas of numbers. False where that is not all there is to it.
    [[nodiscard]] bool compute_quickly(std::span<const double> values, double& result) const {
        return m_quick_code.compute(values, result);
    }

    [[nodiscard]] std::vector<CheckFault> check() const;
    [[nodiscard]] std::vector<Report> warnings() const;

    // For computations of many rows: throws Refused where a name has no value, or the count of
    // values is wrong.
    void check_values(std::size_t count) const;
    [[nodiscard]] bool has_all_values(std::size_t count) const;
    // What there is to compute for values of these kinds: what was made ready, or else a recording
    // made for it, in the room.
    [[nodiscard]] const Recording& recording(Kinds texts, std::optional<Recording>& room) const;
    // How columns of such values are computed, where they are all numbers; null where they have to
    // be computed row by row. Made when it is first asked for.
    [[nodiscard]] const Blocks* blocks(Kinds texts) const;
    // A text as the formula sees it, and as callers do. They give what does not convert.
    std::optional<Inconvertible> to_inside(std::string_view text, std::string& room,
                                           std::string_view& bytes) const;
    std::optional<Inconvertible> to_outside(std::string_view bytes, std::string& text) const;
    [[nodiscard]] Report report_of_failure(const Fault& fault) const;

  private:
    [[nodiscard]] bool has_bytes() const { return (m_flags & MORANDEL_CODE_PAGE_936) != 0; }
    [[nodiscard]] morandel_position position(Extent extent) const;
    void read_text();
    void read_names(std::optional<std::span<const GivenName>> names);
    void read_name(std::string_view name);
    [[nodiscard]] bool is_first_of_name(std::size_t place) const {
        return find_name(m_names[place].text) == static_cast<int>(place);
    }
    void add_name(std::string_view text, int type, int deduced);
    [[nodiscard]] std::string outside(std::string_view bytes) const;
    [[nodiscard]] std::string about(const Fault& fault) const;
    [[nodiscard]] Report report_of(const Fault& fault) const;
    Extent place_of(const std::string& name, std::size_t end, bool& is_own) const;
    void add_warnings_of_computing(const std::vector<CheckFault>& faults,
                                   std::vector<Report>& reports) const;
    bool compute(std::span<const morandel_value> values, Result& result, bool tells_why) const;

    QuickCode m_quick_code;
    std::string m_text;  // as given
    int m_flags;
    std::string m_formula;              // bytes of code page 936
    std::vector<std::string> m_inside;  // likewise the names
    std::vector<Name> m_names;
    std::vector<Name> m_free_names;
    Kinds m_texts;
    Kinds m_told_numbers;  // names whose type was told and is no text
    std::optional<Recording> m_recording;
    mutable std::atomic<const Blocks*> m_blocks = nullptr;
    mutable std::unique_ptr<const Blocks> m_own_blocks;  // set by the thread that made those
};

}  // namespace morandel::formula
