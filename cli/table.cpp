#include "cli/table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/values.h"

namespace morandel::cli {
namespace {

constexpr std::uint64_t most_reports = 10;

EmptyFields empty_fields_of(const std::string& choice) {
    return choice == "zero"    ? EmptyFields::are_zero
           : choice == "empty" ? EmptyFields::stay_empty
                               : EmptyFields::are_errors;
}

using State = ComputedColumn::State;

TableFormula read_added(const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string_view whole = text;
    std::string_view title = whole.substr(0, equals);
    if (title.ends_with(':')) title.remove_suffix(1);
    title = trim(title);
    if (equals == std::string::npos || title.empty()) {
        throw UsageError(say("expected --add 'column = formula', got '{0}'", text));
    }
    if (!is_utf8(title)) throw UsageError(say("{0} takes UTF-8", "--add"));
    return {std::string(title), std::string(trim(whole.substr(equals + 1)))};
}

}  // namespace

bool Table::Condition::holds(std::size_t index) const {
    return results.states[index] == State::number && results.numbers[index] != 0.0;
}

Table::Table(const Request& request, Message source, std::size_t first_value, char delimiter)
    : m_request(request),
      m_source(std::move(source)),
      m_style{delimiter, request.encoding == "gbk", request.json, !request.no_header,
              NumberFormat(request.decimals, request.plain)},
      m_on_error(request.on_error == "skip"    ? OnError::skip
                 : request.on_error == "empty" ? OnError::leave_empty
                                               : OnError::stop),
      m_empty_fields(empty_fields_of(request.empty)),
      m_given(read_texts(request.operands, first_value)),
      m_output(m_style),
      m_writer(request.output),
      m_progress(!request.output.empty()) {
    for (const std::string& text : request.add) m_added.push_back(read_added(text));
    for (const std::string& text : request.where) {
        m_conditions.push_back({TableFormula("", text), false, {}});
    }
    if (m_added.empty() && m_conditions.empty() && request.select.empty()) {
        throw UsageError(say("each needs --add, --where or --select; see morandel help each"));
    }
}

int Table::run(std::FILE* file, std::uint64_t size) {
    m_progress.begin(size);
    TableReader reader(file, m_style.delimiter, m_style.has_header ? 0 : 1, m_style.is_gbk);
    bool has_header = false;
    bool goes_on = true;
    while (goes_on) {
        ReadBlock read;
        try {
            read = reader.next();
        } catch (const Problem& problem) {
            m_writer.drain();
            throw Problem(say("{0}: {1}", m_source, problem.message()));
        }
        if (!read.block) break;
        const Block& rows = read.block->read;
        const bool begins = !has_header && !rows.rows.empty();
        if (begins) take_header(rows.rows.front(), rows.fields, read.has_mark);
        has_header = has_header || begins;
        if (has_header) goes_on = take_rows(read.block, begins && m_style.has_header);
        m_progress.update(read.read_so_far, m_rows);
    }
    m_progress.clear();
    if (!has_header) {
        throw Problem(m_style.has_header ? say("{0} has no header row", m_source)
                                         : say("{0} has no rows", m_source));
    }
    report_suppressed();
    if (!goes_on) {
        m_writer.drain();
        return 1;
    }
    m_writer.finish();
    return 0;
}

// All columns of the piece are computed first; then each row is judged, in order.
bool Table::take_rows(std::shared_ptr<TableBlock> block, bool has_header) {
    m_block = std::move(block);
    const std::size_t first = has_header ? 1 : 0;
    m_rows_before = m_rows + 1 - first;
    m_block->begin(m_file_columns.size(), m_added.size(), m_style.is_gbk, m_empty_fields);
    choose_rows(first);
    for (std::size_t i = 0; i < m_added.size(); ++i) compute_added(i);
    for (Condition& condition : m_conditions) {
        if (condition.comes_last) condition.formula.compute(*m_block, condition.results);
    }

    std::size_t chosen = 0;
    Verdict verdict = Verdict::keep;
    for (std::size_t row = first; row < m_block->read.rows.size(); ++row) {
        ++m_rows;
        if (chosen < m_block->chosen() && m_block->chosen_place(chosen).row == row) {
            verdict = judge_row({row, chosen++});
        } else {
            verdict = judge_conditions({row, row - first}, false);
        }
        if (verdict == Verdict::stop) break;
    }
    write_rows();
    m_block.reset();
    return verdict != Verdict::stop;
}

void Table::compute_added(std::size_t index) {
    ComputedColumn& computed = m_block->computed(index);
    m_added[index].compute(*m_block, computed);
    for (std::size_t i = 0; i < m_block->chosen(); ++i) {
        if (m_block->is_too_long(m_block->chosen_place(i).row)) computed.states[i] = State::failed;
    }
}

// Rows that conditions on the file's own columns leave out are not computed.
void Table::choose_rows(std::size_t first) {
    std::vector<std::size_t> rows(m_block->read.rows.size() - first);
    std::iota(rows.begin(), rows.end(), first);
    m_block->choose(rows);
    for (Condition& condition : m_conditions) {
        if (!condition.comes_last) condition.formula.compute(*m_block, condition.results);
    }
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool all_hold = std::ranges::all_of(m_conditions, [i](const Condition& condition) {
            return condition.comes_last || condition.holds(i);
        });
        if (m_block->is_too_long(rows[i]) || all_hold) chosen.push_back(rows[i]);
    }
    if (chosen.size() < rows.size()) m_block->choose(std::move(chosen));
}

// The first one that does not hold decides.
Table::Verdict Table::judge_conditions(Place place, bool come_last) {
    for (const Condition& condition : m_conditions) {
        if (condition.comes_last != come_last || condition.holds(place.chosen)) continue;
        const State state = condition.results.states[place.chosen];
        if (state != State::failed && state != State::text) return Verdict::leave_out;
        const Verdict verdict = tolerate(&condition.formula, place);
        return verdict == Verdict::keep ? Verdict::leave_out : verdict;
    }
    return Verdict::keep;
}

Table::Verdict Table::judge_row(Place place) {
    if (m_added.empty() && m_block->is_too_long(place.row)) {
        const Verdict verdict = tolerate(nullptr, place);
        if (verdict != Verdict::keep) return verdict;
    }
    for (std::size_t i = 0; i < m_added.size(); ++i) {
        if (m_block->computed(i).states[place.chosen] != State::failed) continue;
        const Verdict verdict = tolerate(&m_added[i], place);
        if (verdict != Verdict::keep) return verdict;
    }
    const Verdict verdict = judge_conditions(place, true);
    if (verdict != Verdict::keep) return verdict;
    m_kept.push_back(place);
    return Verdict::keep;
}

Outcome Table::explain(const TableFormula* formula, Place place) const {
    const auto condition = std::ranges::find_if(
        m_conditions, [formula](const Condition& each) { return &each.formula == formula; });
    const bool is_condition = condition != m_conditions.end();
    if (!is_condition && m_block->is_too_long(place.row)) {
        return failed(say("the row has more fields than the header"));
    }
    if (is_condition && condition->results.states[place.chosen] == State::text) {
        return failed(say("a condition is a number, not a text"));
    }
    return formula->explain(*m_block, place);
}

// Names the row, up to ten times, and what fails, if that is not the row itself. What has been
// written stands before the message.
Table::Verdict Table::tolerate(const TableFormula* formula, Place place) {
    if (++m_reports <= most_reports || m_on_error == OnError::stop) {
        write_rows();
        m_writer.drain();
        m_progress.clear();
        const Message why = failure_message(explain(formula, place));
        print_problem(formula == nullptr ? say("{0} row {1}: {2}", m_source, m_rows, why)
                                         : say("{0} row {1}, {2}: {3}", m_source, m_rows,
                                               formula->shown_title(), why));
    }
    return m_on_error == OnError::stop   ? Verdict::stop
           : m_on_error == OnError::skip ? Verdict::leave_out
                                         : Verdict::keep;
}

// The piece is not touched any more, or not before all is written.
void Table::write_rows() {
    if (m_kept.empty()) return;
    m_writer.write([&output = m_output, &source = m_source, rows_before = m_rows_before,
                    block = m_block, kept = std::exchange(m_kept, {})](std::string& text) {
        for (const Place place : kept) {
            const std::size_t whole = text.size();
            try {
                output.append_row(text, *block, place);
            } catch (const EncodingError& problem) {
                text.resize(whole);
                throw Problem(
                    say("{0} row {1}: {2}", source, rows_before + place.row, problem.message()));
            }
        }
    });
}

void Table::report_suppressed() {
    if (m_reports <= most_reports || m_on_error == OnError::stop) return;
    m_writer.drain();
    print_problem(say("{0}: {1} more such messages", m_source, m_reports - most_reports));
}

}  // namespace morandel::cli
