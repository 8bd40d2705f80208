// Names with given values and names with formulas over other names, computed as they are needed.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cli/evaluate.h"

namespace morandel::cli {

// A line "name = value" or "name := formula".
struct Definition {
    std::string name;     // code page 936
    Given value;          // of a given one
    std::string formula;  // UTF-8, of a computed one
    bool is_computed = false;
    int line = 0;  // where it stands, for those that come from a file
};

class Definitions {
  public:
    // Forgets a name; false where there is none of it.
    bool unset(const std::string& name);
    // Replaces a definition of the same name, in its place.
    void set(Definition definition);
    [[nodiscard]] bool has(const std::string& name) const { return m_places.contains(name); }

    [[nodiscard]] std::optional<std::size_t> find(const std::string& name) const {
        const auto place = m_places.find(name);
        return place == m_places.end() ? std::nullopt : std::optional(place->second);
    }

    [[nodiscard]] std::size_t size() const { return m_items.size(); }
    [[nodiscard]] const Definition& operator[](std::size_t place) const {
        return m_items[place].definition;
    }

    // Whether the formula of a name uses another.
    [[nodiscard]] bool uses(std::size_t place, const std::string& name) const;

    // The value of a name by its place, computed with all that it needs.
    Outcome value(std::size_t place);
    // The given and computed values of the names that a formula uses; those that fail are left out.
    std::vector<Variable> values_for(std::string_view formula);
    // The value of a formula over the names.
    Outcome evaluate(std::string_view formula);

  private:
    enum class State { waiting, entered, settled };

    struct Item {
        Definition definition;
        std::vector<std::string> needs;  // names that its formula uses
        State state = State::waiting;
        Outcome outcome;
    };

    Outcome read_needs(std::string_view formula, std::vector<std::string>& names);
    void settle(std::size_t place);
    const std::string* unsettled_need(const Item& item) const;
    Outcome compute(std::string_view formula, const std::vector<std::string>& names);
    [[nodiscard]] Outcome cycle(const std::vector<std::size_t>& path, std::size_t again) const;
    [[nodiscard]] std::vector<std::string> all_names() const;

    std::vector<Item> m_items;
    std::unordered_map<std::string, std::size_t> m_places;
    bool m_any_settled = false;
    std::size_t m_compared = 0;  // names, for suggestions
    Evaluator m_evaluator;
};

}  // namespace morandel::cli
