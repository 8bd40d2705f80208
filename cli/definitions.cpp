#include "cli/definitions.h"

#include <algorithm>
#include <utility>

#include "cli/encoding.h"
#include "engine/characters.h"

namespace morandel::cli {
namespace {

Outcome outcome_of(const Given& value) {
    Outcome outcome;
    outcome.succeeded = true;
    outcome.type = type_number;
    if (const auto* text = std::get_if<std::string>(&value)) {
        outcome.type = type_text;
        outcome.text = to_utf8(*text);
    } else {
        outcome.number = std::get<double>(value);
    }
    return outcome;
}

}  // namespace

bool is_plain_name(std::string_view name) {
    const auto is_name_byte = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || c == '_' || is_any(c, digit) ||
               (to_upper(c) >= 'A' && to_upper(c) <= 'Z');
    };
    return !name.empty() && !is_any(name.front(), digit) &&
           std::ranges::all_of(name, is_name_byte) && find_word(name) == nullptr;
}

void Definitions::set(Definition definition) {
    const auto [place, added] = m_places.emplace(definition.name, m_items.size());
    if (added) m_items.emplace_back();
    Item& item = m_items[place->second];
    item.definition = std::move(definition);
    item.needs.clear();
    if (item.definition.is_computed) read_needs(item.definition.formula, item.needs);
    if (!m_any_settled) return;
    for (Item& other : m_items) other.state = State::waiting;
    m_any_settled = false;
}

Outcome Definitions::value(std::size_t place) {
    settle(place);
    return m_items[place].outcome;
}

// The names that a formula uses: all of them are free where none is a parameter.
Outcome Definitions::read_needs(std::string_view formula, std::vector<std::string>& names) {
    m_evaluator.set_variables({});
    Outcome loaded = m_evaluator.load(formula);
    if (loaded.succeeded) names = m_evaluator.free_names();
    return loaded;
}

Outcome Definitions::evaluate(std::string_view formula) {
    std::vector<std::string> names;
    Outcome loaded = read_needs(formula, names);
    if (!loaded.succeeded) return loaded;
    for (const std::string& name : names) {
        if (const auto place = m_places.find(name); place != m_places.end()) settle(place->second);
    }
    return compute(formula, names);
}

// Settles what a name needs before the name, without recursion: chains may be long.
void Definitions::settle(std::size_t place) {
    m_any_settled = true;
    std::vector<std::size_t> path{place};
    while (!path.empty()) {
        Item& item = m_items[path.back()];
        if (item.state == State::settled) {
            path.pop_back();
            continue;
        }
        item.state = State::entered;
        const std::string* need = unsettled_need(item);
        if (need == nullptr) {
            item.outcome = item.definition.is_computed
                               ? compute(item.definition.formula, item.needs)
                               : outcome_of(item.definition.value);
            item.state = State::settled;
        } else if (const std::size_t next = m_places.at(*need);
                   m_items[next].state == State::entered) {
            item.outcome = failed(to_utf8(item.definition.name) + " depends on itself, by way of " +
                                  to_utf8(*need));
            item.state = State::settled;
        } else {
            path.push_back(next);
        }
    }
}

const std::string* Definitions::unsettled_need(const Item& item) const {
    const auto need = std::ranges::find_if(item.needs, [this](const std::string& name) {
        const auto place = m_places.find(name);
        return place != m_places.end() && m_items[place->second].state != State::settled;
    });
    return need == item.needs.end() ? nullptr : &*need;
}

// A failed name is not handed on, so what uses it fails with that name's outcome.
Outcome Definitions::compute(std::string_view formula, const std::vector<std::string>& names) {
    std::vector<Variable> variables;
    for (const std::string& name : names) {
        const auto place = m_places.find(name);
        if (place == m_places.end()) continue;
        const Item& item = m_items[place->second];
        if (!item.outcome.succeeded) return item.outcome;
        variables.push_back({name, given_of(item.outcome)});
    }
    if (variables.size() > CExpress::max_parameters) {
        return failed("the formula uses more than 50 names");
    }
    m_evaluator.set_variables(variables);
    return m_evaluator.evaluate(formula);
}

}  // namespace morandel::cli
