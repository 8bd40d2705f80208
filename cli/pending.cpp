#include "cli/pending.h"

#include <morandel.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>

#include "cli/outcome.h"

namespace morandel::cli {
namespace {

// What a function needs among what is pending when it is carried out, and what it takes away. Those
// that are not listed need and take nothing.
struct Demand {
    std::string_view name;
    std::size_t needed_numbers;
    std::size_t needed_texts;
    std::size_t taken_numbers;
    std::size_t taken_texts;
};

constexpr Demand demands[] = {
    {"preci", 0, 0, 1, 0},     {"mod", 0, 0, 1, 0},         {"strsub", 2, 0, 3, 0},
    {"strsubn", 1, 1, 1, 1},   {"strreplace", 0, 2, 2, 2},  {"strtrim", 0, 1, 1, 1},
    {"strdelete", 0, 0, 0, 1}, {"strinsert", 0, 0, 1, 1},   {"strfind", 0, 1, 1, 1},
    {"strfindn", 0, 1, 1, 1},  {"strmismatch", 0, 1, 3, 1}, {"left", 2, 0, 1, 0},
    {"right", 2, 0, 1, 0},     {"r2s", 0, 0, 1, 0},         {"if", 0, 0, 2, 0},
};

// Each function's own example tells what it gives.
Kind result_kind(const Function& function) {
    static std::unordered_map<std::string_view, Kind> known;
    const auto [place, is_new] = known.try_emplace(function.name, Kind::open);
    if (!is_new) return place->second;
    CExpress express;
    const std::string example(function.example);
    if (express.SetExpression(example.c_str()) != 0 && express.CalcExpression() != 0) {
        place->second = express.GetResultType() == result_text ? Kind::text : Kind::number;
    }
    return place->second;
}

// Walks the calls in the order in which they are carried out.
class Walk {
  public:
    Walk(const Tree& tree, const KindOfName& kind_of_name)
        : m_tree(tree), m_kinds(kinds_of(tree, kind_of_name)) {}

    Pending run() {
        visit(m_tree.root);
        if (!m_numbers.empty() || !m_texts.empty() || !m_found.faults.empty()) {
            m_found.leaves_nothing = false;
        }
        return std::move(m_found);
    }

  private:
    using Stack = std::vector<std::size_t>;  // the calls whose arguments are pending

    void visit(std::size_t index) {
        const Node& node = m_tree.nodes[index];
        for (std::size_t i = 0; i < node.children.size(); ++i) {
            const std::size_t child = node.children[i];
            visit(child);
            if (node.type != Node::Type::call || i == 0) continue;
            if (is_call_of(child, "strcat") && is_call_of(index, "strcat")) {
                fault(PendingFault::What::joins_inside, child);
            }
            Kind kind = m_kinds[child];
            if (kind == Kind::open) {
                kind = wanted_kind(m_tree, node, i);
                m_found.leaves_nothing = false;
            }
            (kind == Kind::text ? m_texts : m_numbers).push_back(index);
        }
        if (node.type == Node::Type::call) carry_out(index);
    }

    [[nodiscard]] bool is_call_of(std::size_t index, std::string_view name) const {
        const Node& node = m_tree.nodes[index];
        return node.type == Node::Type::call && m_tree.tokens[node.token].function->name == name;
    }

    void carry_out(std::size_t index) {
        if (is_call_of(index, "strcat")) {
            // Of the texts that it joins, every second stays.
            const auto own = static_cast<std::size_t>(std::ranges::count(m_texts, index));
            if (own == 0) fault(PendingFault::What::too_few_texts, index);
            take(m_texts, own - own / 2, index);
            std::ranges::replace(m_texts, index, no_one);
            return;
        }
        const auto* demand = std::ranges::find(
            demands, m_tree.tokens[m_tree.nodes[index].token].function->name, &Demand::name);
        if (demand != std::end(demands)) {
            if (m_numbers.size() < demand->needed_numbers) {
                fault(PendingFault::What::too_few_numbers, index);
            }
            if (m_texts.size() < demand->needed_texts) {
                fault(PendingFault::What::too_few_texts, index);
            }
            take(m_numbers, demand->taken_numbers, index);
            take(m_texts, demand->taken_texts, index);
        }
        // What it did not take nobody owns any longer.
        std::ranges::replace(m_numbers, index, no_one);
        std::ranges::replace(m_texts, index, no_one);
    }

    void take(Stack& stack, std::size_t count, std::size_t call) {
        bool from_other = false;
        for (; count > 0 && !stack.empty(); --count) {
            from_other = from_other || (stack.back() != call && stack.back() != no_one);
            stack.pop_back();
        }
        if (from_other) fault(PendingFault::What::takes_from_other, call);
    }

    void fault(PendingFault::What what, std::size_t node) {
        m_found.faults.push_back({what, node});
    }

    static constexpr std::size_t no_one = static_cast<std::size_t>(-1);

    const Tree& m_tree;
    std::vector<Kind> m_kinds;
    Stack m_numbers;
    Stack m_texts;
    Pending m_found;
};

}  // namespace

Kind wanted_kind(const Function& function, std::size_t argument) {
    std::string kinds(function.kinds);
    std::erase(kinds, '[');
    const bool repeats = kinds.ends_with('*');
    if (repeats) kinds.pop_back();
    if (argument >= kinds.size() && !repeats) return Kind::open;
    return kinds[std::min(argument, kinds.size() - 1)] == 't' ? Kind::text : Kind::number;
}

Kind wanted_kind(const Tree& tree, const Node& node, std::size_t operand) {
    const FormulaToken& token = tree.tokens[node.token];
    if (node.type == Node::Type::operation) {
        return token.is("like") || token.is("equal") ? Kind::text : Kind::number;
    }
    return node.type == Node::Type::call ? wanted_kind(*token.function, operand) : Kind::open;
}

std::vector<Kind> kinds_of(const Tree& tree, const KindOfName& kind_of_name) {
    std::vector<Kind> kinds;
    for (const Node& node : tree.nodes) {
        const FormulaToken& token = tree.tokens[node.token];
        Kind kind = Kind::number;
        if (node.type == Node::Type::missing) {
            kind = Kind::open;
        } else if (node.type == Node::Type::call) {
            kind = result_kind(*token.function);
        } else if (token.kind == TokenKind::text) {
            kind = Kind::text;
        } else if (token.kind == TokenKind::name) {
            kind = kind_of_name(token.text);
        } else if (node.children.size() == 1 && token.is("+")) {
            kind = kinds[node.children.front()];  // a + before a text keeps it
        }
        kinds.push_back(kind);
    }
    return kinds;
}

Pending pending_of(const Tree& tree, const KindOfName& kind_of_name) {
    return Walk(tree, kind_of_name).run();
}

}  // namespace morandel::cli
