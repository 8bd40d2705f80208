#include "formula/prepared.h"

#include <algorithm>
#include <array>
#include <memory>

namespace morandel::formula {
namespace {

// Those are about where something begins, not about the whole of it.
bool is_about_a_beginning(int reason) {
    return reason == MORANDEL_REASON_NO_TOKEN || reason == MORANDEL_REASON_NOT_READ ||
           reason == MORANDEL_REASON_NOT_COMPUTED;
}

}  // namespace

Prepared::Prepared(std::string_view text, std::optional<std::span<const GivenName>> names,
                   int flags)
    : m_text(text), m_flags(flags) {
    read_text();
    read_names(names);
    m_recording.emplace(m_formula, m_inside, m_texts);
    if (m_recording->refusal()) throw Refused{report_of(*m_recording->refusal())};
    for (const FreeName& name : m_recording->free_names()) {
        m_free_names.push_back({outside(name.name), name.type});
    }
    if (has_all_values(m_names.size())) m_quick_code = m_recording->quick_code();
}

void Prepared::read_text() {
    if (has_bytes()) {
        m_formula = m_text;
    } else if (const auto problem = to_bytes(m_text, m_formula)) {
        throw Refused{report_of_text(*problem, m_text)};
    }
    const std::size_t size = m_formula.size();
    if (size > longest_formula) {
        Report report = report_of_reason(MORANDEL_REASON_TOO_LONG, std::to_string(size));
        report.position = position({longest_formula, size});
        throw Refused{report};
    }
    const std::size_t terminator = m_formula.find('\0');
    if (terminator == std::string::npos) return;
    Report report = report_of_reason(MORANDEL_REASON_MISUSE, "NUL");
    report.position = position({terminator, terminator + 1});
    throw Refused{report};
}

void Prepared::read_names(std::optional<std::span<const GivenName>> names) {
    const auto given = names.value_or(std::span<const GivenName>());
    for (const GivenName& name : given) read_name(name.text);
    // What its places ask of each name, where there is no value for any, but for those that are
    // too long for that.
    std::vector<FreeName> used;
    const auto is_told = [](const GivenName& name) { return name.type != MORANDEL_DEDUCED; };
    if (!names || !std::ranges::all_of(given, is_told)) {
        std::vector<std::string> valued = m_inside;
        std::erase_if(valued, [](const auto& name) { return name.size() <= longest_free_name; });
        used = Recording(m_formula, valued, {}).free_names();
    }
    for (std::size_t i = 0; i < given.size(); ++i) {
        const auto use = std::ranges::find(used, m_inside[i], &FreeName::name);
        add_name(given[i].text, given[i].type, use != used.end() ? use->type : MORANDEL_NUMBER);
    }
    if (names) return;
    if (used.size() > most_names) {
        refuse(MORANDEL_REASON_TOO_MANY_NAMES, std::to_string(used.size()));
    }
    for (const FreeName& name : used) {
        m_inside.push_back(name.name);
        add_name(outside(name.name), MORANDEL_DEDUCED, name.type);
    }
}

void Prepared::read_name(std::string_view name) {
    std::string room;
    std::string_view bytes;
    if (const auto problem = to_inside(name, room, bytes)) {
        Report report = report_of_text(*problem, name);
        report.value = static_cast<int>(m_inside.size());
        throw Refused{report};
    }
    m_inside.emplace_back(bytes);
}

void Prepared::add_name(std::string_view text, int type, int deduced) {
    const std::size_t place = m_names.size();
    const bool is_told = type != MORANDEL_DEDUCED;
    const bool as_text = is_text_type(is_told ? type : deduced);
    m_texts[place] = as_text;
    m_told_numbers[place] = is_told && !as_text;
    m_names.push_back({std::string(text), as_text ? MORANDEL_TEXT : MORANDEL_NUMBER});
}

int Prepared::find_name(std::string_view text) const {
    const auto name = std::ranges::find(m_names, text, &Name::text);
    return name == m_names.end() ? -1 : static_cast<int>(name - m_names.begin());
}

std::optional<Inconvertible> Prepared::to_inside(std::string_view text, std::string& room,
                                                 std::string_view& bytes) const {
    std::optional<Inconvertible> problem;
    bytes = has_bytes() ? text : bytes_of(text, room, problem);
    return problem;
}

std::optional<Inconvertible> Prepared::to_outside(std::string_view bytes, std::string& text) const {
    if (!has_bytes()) return to_utf8(bytes, text);
    text.append(bytes);
    return std::nullopt;
}

// Of the formula, whose characters are whole, but for where it is given as bytes.
std::string Prepared::outside(std::string_view bytes) const {
    std::string text;
    (void)to_outside(bytes, text);
    return text;
}

morandel_position Prepared::position(Extent extent) const {
    return has_bytes() ? position_in_bytes(extent, m_formula)
                       : position_in_utf8(extent, m_formula, m_text);
}

// In UTF-8, as messages are.
std::string Prepared::about(const Fault& fault) const {
    std::size_t end = fault.where.end;
    if (is_about_a_beginning(fault.reason)) end = std::min(end, fault.where.begin + 1);
    const morandel_position at = position_in_bytes({fault.where.begin, end}, m_formula);
    std::string text;
    (void)to_utf8(std::string_view(m_formula).substr(at.byte, at.bytes), text);
    return text;
}

Report Prepared::report_of(const Fault& fault) const {
    const morandel_position at = position(fault.where);
    Report report = fault.number >= 0 ? report_of_number(fault.number)
                                      : report_of_reason(fault.reason, about(fault));
    report.position = at;
    return report;
}

Report Prepared::report_of_failure(const Fault& fault) const { return report_of(fault); }

bool Prepared::has_all_values(std::size_t count) const {
    return count == m_names.size() &&
           (m_free_names.empty() || (m_flags & MORANDEL_ALLOW_FREE_NAMES) != 0);
}

void Prepared::check_values(std::size_t count) const {
    if (has_all_values(count)) return;
    if (count != m_names.size()) {
        refuse(MORANDEL_REASON_VALUE_COUNT, std::to_string(m_names.size()));
    }
    throw Refused{
        report_of({-1, MORANDEL_REASON_FREE_NAME, m_recording->free_names().front().where})};
}

const Recording& Prepared::recording(Kinds texts, std::optional<Recording>& room) const {
    if (texts == m_texts) return *m_recording;
    return room.emplace(m_formula, m_inside, texts);
}

const Blocks* Prepared::blocks(Kinds texts) const {
    if (texts.any() || m_texts.any()) return nullptr;
    const Blocks* made = m_blocks.load(std::memory_order_acquire);
    if (made != nullptr) return made;
    std::unique_ptr<const Blocks> own = m_recording->blocks();
    // Another thread may have been quicker.
    if (own != nullptr && m_blocks.compare_exchange_strong(made, own.get())) {
        made = own.get();
        m_own_blocks = std::move(own);
    }
    return made;
}

bool Prepared::compute(std::span<const morandel_value> values, Result& result,
                       bool tells_why) const {
    if (!has_all_values(values.size())) {
        if (tells_why) check_values(values.size());
        return false;
    }
    Kinds texts;
    for (std::size_t i = 0; i < values.size(); ++i) texts[i] = is_text_type(values[i].type);
    std::optional<Recording> other;
    Computation computation(recording(texts, other));
    std::vector<std::string> rooms(texts.any() ? values.size() : 0);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!texts[i]) {
            computation.set_number(i, values[i].number);
            continue;
        }
        const std::string_view text = view(values[i].text, values[i].size);
        std::string_view bytes;
        if (const auto problem = to_inside(text, rooms[i], bytes)) {
            if (!tells_why) return false;
            Report report = report_of_text(*problem, text);
            report.value = static_cast<int>(i);
            throw Refused{report};
        }
        computation.set_text(i, bytes);
    }
    if (!computation.run()) {
        if (tells_why) throw Refused{report_of(computation.fault())};
        return false;
    }
    const Value& value = computation.value();
    // A number keeps the text of an operand.
    const auto problem =
        value.type == type_text ? to_outside(value.text, result.text()) : std::nullopt;
    if (problem) {
        if (tells_why) throw Refused{report_of_text(*problem, value.text)};
        return false;
    }
    result.type = value.type;
    result.number = value.number;
    return true;
}

void Prepared::compute(std::span<const morandel_value> values, Result& result) const {
    (void)compute(values, result, true);
}

bool Prepared::try_compute(std::span<const morandel_value> values, Result& result) const {
    return compute(values, result, false);
}

bool Prepared::compute_numbers(std::span<const double> values, double& result) const {
    if (!has_all_values(values.size())) return false;
    std::optional<Recording> other;
    Computation computation(recording({}, other));
    for (std::size_t i = 0; i < values.size(); ++i) computation.set_number(i, values[i]);
    if (!computation.run() || computation.value().type == type_text) return false;
    result = computation.value().number;
    return true;
}

}  // namespace morandel::formula
