// What a table's first row says: which columns there are, what formulas take from them, and which
// are written.

#include <algorithm>
#include <utility>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/suggestion.h"
#include "cli/table.h"
#include "cli/values.h"
#include "cli/warning_output.h"

namespace morandel::cli {

std::string Table::title_of_gbk(std::string_view title) const {
    try {
        return to_utf8(title);
    } catch (const EncodingError& problem) {
        throw Problem(say("{0}: {1}: {2}", m_source, say("the header row"), problem.message()));
    }
}

// A file in another encoding can still be worked with, by the columns that can be read.
void Table::warn_of_encoding(const Row& row) const {
    const bool is_other = m_style.is_gbk ? row.raw.starts_with(byte_order_mark) : !is_utf8(row.raw);
    if (!is_other) return;
    const Message message =
        m_style.is_gbk ? say("{0} begins with the mark of UTF-8; is it --encoding utf-8?", m_source)
                       : say("{0}: the header row is not UTF-8; is it --encoding gbk?", m_source);
    const bool ends = m_request.strict || (m_style.json && !m_style.is_gbk);
    if (ends) throw Problem(message);
    if (!m_request.quiet) print_note(Paint::warning, "morandel:", say("warning: {0}", message), {});
}

void Table::take_header(const Row& row, std::span<const Field> all_fields, bool has_mark) {
    const std::span<const Field> fields = all_fields.subspan(row.first, row.count);
    if (m_style.has_header) warn_of_encoding(row);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string_view title = fields[i].text;
        std::string shown(title);
        if (m_style.has_header && m_style.is_gbk) shown = title_of_gbk(title);
        if (!m_style.has_header) shown = "c" + std::to_string(i + 1);
        m_file_columns.add(std::move(shown));
    }
    m_columns = m_file_columns;
    m_texts.assign(fields.size(), false);
    m_numbers.assign(fields.size(), false);
    bind_all();
    warn();
    choose_columns();
    std::string header(has_mark && !m_style.json ? byte_order_mark : "");
    m_output.append_header(header, row, m_columns, fields);
    if (header.empty()) return;
    m_writer.write([header = std::move(header)](std::string& text) { text += header; });
}

// Conditions on the file's own columns are judged first, so that rows that they leave out are not
// computed; those that need a computed column come last.
void Table::bind_all() {
    for (TableFormula& formula : m_added) {
        bind(formula, m_columns);
        m_columns.add(formula.title(), true);
    }
    check_kinds();
    for (Condition& condition : m_conditions) bind(condition);
    std::vector<std::string> used;
    const auto add_names = [&used](const TableFormula& formula) {
        for (const std::string& name : formula.names()) used.push_back(to_gbk(name));
    };
    for (const TableFormula& formula : m_added) add_names(formula);
    for (const Condition& condition : m_conditions) add_names(condition.formula);
    refuse_unused(m_given, used);
}

bool Table::is_given(std::string_view name) const {
    return std::ranges::any_of(
        m_given, [name](const Variable& given) { return to_utf8(given.name) == name; });
}

// What is asked to be a text or a number is there, and not asked to be both.
void Table::check_kinds() const {
    const auto has = [this](const std::string& name) {
        return is_given(name) ? std::nullopt : std::optional(require_column(name));
    };
    for (const std::string& name : m_request.number) (void)has(name);
    for (const std::string& name : m_request.text) {
        const auto column = has(name);
        const bool is_both = std::ranges::any_of(m_request.number, [&](const std::string& other) {
            return other == name || (column && has(other) == column);
        });
        if (is_both) throw UsageError(say("{0} cannot be both a text and a number", name));
    }
}

void Table::bind(Condition& condition) {
    const std::vector<std::string> names = condition.formula.names();
    condition.comes_last = std::ranges::any_of(names, [this](const std::string& name) {
        return !is_given(name) && !m_file_columns.find(name);
    });
    bind(condition.formula, condition.comes_last ? m_columns : m_file_columns);
}

void Table::warn() const {
    const Style style(m_request);
    bool all_well = true;
    const auto warn_of = [&](const TableFormula& formula) {
        const auto kinds = [&](std::string_view name) { return formula.kind_of_name(name); };
        all_well =
            print_warnings(formula.formula(), kinds, style, formula.shown_title()) && all_well;
    };
    for (const TableFormula& formula : m_added) warn_of(formula);
    for (const Condition& condition : m_conditions) warn_of(condition.formula);
    if (!all_well) throw Problem(say("with --strict a warning is a failure"));
}

// A column is what the formula makes of it, unless the caller says otherwise.
void Table::bind(TableFormula& formula, const Columns& columns) {
    using Column = std::optional<std::size_t>;
    const auto is_asked = [&](const std::vector<std::string>& names, std::string_view used,
                              const Column& column) {
        return std::ranges::any_of(names, [&](const std::string& name) {
            return is_given(name) ? name == used : column && columns.find(name) == column;
        });
    };
    formula.bind(columns, m_given, m_empty_fields, m_style.is_gbk,
                 [&](std::string_view name, const Column& column, bool by_default) {
                     return is_asked(m_request.text, name, column) ||
                            (by_default && !is_asked(m_request.number, name, column));
                 });
    for (const Source& source : formula.sources()) {
        if (source.column >= m_numbers.size()) continue;
        (source.is_text ? m_texts : m_numbers)[source.column] = true;
    }
}

std::size_t Table::require_column(const std::string& name) const {
    if (const auto column = m_columns.find(name)) return *column;
    const std::string close = closest(name, m_columns.names());
    if (close.empty()) throw Problem(say("{0} has no column '{1}'", m_source, name));
    throw Problem(say("{0} has no column '{1}'; did you mean {2}?", m_source, name, close));
}

// A computed column takes the place of one of the same name.
void Table::choose_columns() {
    std::vector<WrittenColumn> written;
    for (std::size_t i = 0; i < m_file_columns.size(); ++i) written.push_back({i, i});
    for (std::size_t i = m_file_columns.size(); i < m_columns.size(); ++i) {
        const std::string& title = m_columns[i].title;
        const auto replaced = m_file_columns.find(title);
        const auto same = std::ranges::find_if(written, [&](const WrittenColumn& other) {
            return (replaced && other.title == *replaced) || m_columns[other.title].title == title;
        });
        if (same != written.end()) {
            same->value = i;
        } else {
            written.push_back({i, i});
        }
    }
    if (!m_request.select.empty()) written = selected_columns();
    std::vector<bool> numbers(m_file_columns.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = m_numbers[i] && !m_texts[i];
    for (const std::string& name : m_request.number) {
        if (const auto column = m_file_columns.find(name)) numbers[*column] = true;
    }
    m_output.choose(m_columns, std::move(written), numbers);
}

std::vector<WrittenColumn> Table::selected_columns() const {
    std::vector<WrittenColumn> written;
    for (std::string_view names : m_request.select) {
        while (true) {
            const std::size_t comma = names.find(',');
            const std::size_t column = require_column(std::string(trim(names.substr(0, comma))));
            written.push_back({column, column});
            if (comma == std::string_view::npos) break;
            names.remove_prefix(comma + 1);
        }
    }
    return written;
}

}  // namespace morandel::cli
