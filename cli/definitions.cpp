#include "cli/definitions.h"

#include <algorithm>
#include <utility>

#include "cli/encoding.h"

namespace morandel::cli {

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

bool Definitions::unset(const std::string& name) {
    const auto place = m_places.find(name);
    if (place == m_places.end()) return false;
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(place->second));
    m_places.clear();
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        m_places.emplace(m_items[i].definition.name, i);
        m_items[i].state = State::waiting;
    }
    m_any_settled = false;
    return true;
}

bool Definitions::uses(std::size_t place, const std::string& name) const {
    const std::vector<std::string>& needs = m_items[place].needs;
    return std::ranges::find(needs, name) != needs.end();
}

std::vector<Variable> Definitions::values_for(std::string_view formula) {
    std::vector<std::string> names;
    std::vector<Variable> values;
    read_needs(formula, names);
    for (const std::string& name : names) {
        const auto place = m_places.find(name);
        if (place == m_places.end()) continue;
        const Outcome outcome = value(place->second);
        if (outcome.succeeded) values.push_back({name, given_of(outcome)});
    }
    return values;
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
            if (item.outcome.line == 0) item.outcome.line = item.definition.line;
            item.state = State::settled;
        } else if (const std::size_t next = m_places.at(*need);
                   m_items[next].state == State::entered) {
            item.outcome = cycle(path, next);
            item.state = State::settled;
        } else {
            path.push_back(next);
        }
    }
}

// The one that closes the cycle fails with it, and hands that on to the others.
Outcome Definitions::cycle(const std::vector<std::size_t>& path, std::size_t again) const {
    std::string names;
    const auto first = std::ranges::find(path, again);
    for (auto place = first; place != path.end(); ++place) {
        names += to_utf8(m_items[*place].definition.name) + " -> ";
    }
    const std::string name = to_utf8(m_items[again].definition.name);
    Outcome outcome = failed(say("{0} depends on itself: {1}", name, names + name));
    outcome.line = m_items[again].definition.line;
    return outcome;
}

std::vector<std::string> Definitions::all_names() const {
    std::vector<std::string> names;
    for (const Item& item : m_items) names.push_back(item.definition.name);
    return names;
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
        return failed(say("the formula uses {0} names; at most {1} can have values",
                          variables.size(), CExpress::max_parameters));
    }
    // By a new evaluator, for which nothing pends.
    const auto evaluate = [&](std::vector<std::string> suggested) {
        Evaluator evaluator;
        evaluator.set_variables(variables);
        evaluator.set_known_names(std::move(suggested));
        return evaluator.evaluate(formula);
    };
    Outcome outcome = evaluate({});
    // So many that thousands of failures among thousands of names do not take minutes.
    constexpr std::size_t most_compared = 1'000'000;
    if (outcome.succeeded || m_compared > most_compared) return outcome;
    m_compared += m_items.size();
    return evaluate(all_names());
}

}  // namespace morandel::cli
