#include "cli/columns.h"

#include <algorithm>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/messages.h"
#include "cli/tokens.h"

namespace morandel::cli {

std::string name_of_title(std::string_view title) {
    std::string name;
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    for (const auto& [utf8, gbk] : characters_of(trim(title))) {
        const char first = utf8.front();
        const bool is_letter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
        const bool is_other = gbk.size() > 1 && unnameable_in(gbk).empty();
        name += is_letter || is_digit(first) || is_other ? utf8 : "_";
    }
    if (!name.empty() && (is_digit(name.front()) || is_reserved(name))) name.insert(0, "_");
    return name;
}

void Columns::add(std::string title, bool is_computed) {
    std::string name = name_of_title(title);
    if (name.empty()) name = "c" + std::to_string(m_columns.size() + 1);
    m_columns.push_back({std::move(title), std::move(name), is_computed});
}

std::optional<std::size_t> Columns::find(std::string_view wanted) const {
    for (const auto part : {&Column::title, &Column::name}) {
        for (std::size_t i = m_columns.size(); i > 0 && m_columns[i - 1].is_computed; --i) {
            if (m_columns[i - 1].*part == wanted) return i - 1;
        }
    }
    for (const auto part : {&Column::title, &Column::name}) {
        const auto found = std::ranges::find(m_columns, wanted, part);
        if (found == m_columns.end()) continue;
        const auto other = std::find_if(found + 1, m_columns.end(), [&](const Column& column) {
            return !column.is_computed && column.*part == wanted;
        });
        const auto place = [this](auto column) { return column - m_columns.begin(); };
        if (other == m_columns.end()) return static_cast<std::size_t>(place(found));
        throw Problem(say("'{0}' may be column {1} ('{2}') or column {3} ('{4}')", wanted,
                          place(found) + 1, found->title, place(other) + 1, other->title));
    }
    return std::nullopt;
}

std::vector<std::string> Columns::names() const {
    std::vector<std::string> names;
    for (const Column& column : m_columns) names.push_back(column.name);
    return names;
}

}  // namespace morandel::cli
