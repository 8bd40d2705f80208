#include "cli/warnings.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "cli/encoding.h"
#include "cli/syntax.h"
#include "cli/tree.h"
#include "language/functions.h"

namespace morandel::cli {
namespace {

// What to write instead, by what the text that is not read begins with.
struct Instead {
    std::string_view beginning;
    Message (*message)(const std::string& ignored);
};

constexpr Instead insteads[] = {
    {"&", [](const std::string& t) { return say("'{0}' is ignored; write 'and'", t); }},
    {"|", [](const std::string& t) { return say("'{0}' is ignored; write 'or'", t); }},
    {".",
     [](const std::string& t) {
         return say(
             "'{0}' is ignored; a number has one point, with a "
             "digit before it",
             t);
     }},
    {",",
     [](const std::string& t) { return say("'{0}' is ignored; commas stand in calls only", t); }},
};

std::string shown(std::string_view gbk) {
    try {
        return to_utf8(gbk);
    } catch (const EncodingError&) {
        return "?";
    }
}

class Finder {
  public:
    Finder(std::string_view formula, const KindOfName& kind_of_name)
        : m_formula(formula),
          m_tree(tree_of(formula)),
          m_kinds(kinds_of(m_tree, kind_of_name)),
          m_pending(pending_of(m_tree, kind_of_name)) {}

    std::vector<Warning> run() {
        find_ignored();
        find_misread();
        find_quoted_constants();
        for (std::size_t i = 0; i < m_tree.nodes.size(); ++i) {
            if (m_tree.nodes[i].type == Node::Type::call) find_wrong_count(i);
            find_wrong_kind(i);
            find_surprising_order(i);
        }
        for (const PendingFault& fault : m_pending.faults) add_pending(fault);
        std::ranges::stable_sort(m_warnings, {}, &Warning::position);
        return std::move(m_warnings);
    }

  private:
    void add(std::size_t position, std::size_t length, WarningKind kind, Message message) {
        m_warnings.push_back({position, length, kind, std::move(message)});
    }
    void add(const FormulaToken& token, WarningKind kind, Message message) {
        add(token.position, token.text.size(), kind, std::move(message));
    }

    void find_ignored() {
        const FormulaToken& token = m_tree.tokens[m_tree.stopped];
        if (token.kind == TokenKind::end) return;
        const std::string_view rest = m_formula.substr(token.position);
        const std::size_t size = rest.find_last_not_of(' ') + 1;
        const std::string text = shown(rest.substr(0, size));
        if (const Message control = control_name(rest[0]); !control.empty()) {
            return add(token.position, size, WarningKind::ignored_text,
                       say("{0} and all that follows it is ignored", control));
        }
        const auto* instead = std::ranges::find_if(
            insteads, [&](const Instead& row) { return rest.starts_with(row.beginning); });
        add(token.position, size, WarningKind::ignored_text,
            instead == std::end(insteads) ? say("'{0}' is ignored", text) : instead->message(text));
    }

    void find_misread() {
        for (std::size_t i = 0; i + 1 < m_tree.stopped; ++i) {
            const FormulaToken& token = m_tree.tokens[i];
            const FormulaToken& next = m_tree.tokens[i + 1];
            if (!token.is("!") || next.position != token.end() || !next.text.starts_with('=')) {
                continue;
            }
            add(token.position, 2, WarningKind::misread,
                say("'!=' is a factorial and a comparison; unequal is '<>'"));
        }
    }

    // Other reserved words in quotes are no texts at all.
    void find_quoted_constants() {
        for (std::size_t i = 0; i < m_tree.stopped; ++i) {
            const FormulaToken& token = m_tree.tokens[i];
            const bool is_constant = token.kind == TokenKind::text &&
                                     is_reserved(token.text.substr(1, token.text.size() - 2));
            if (!is_constant) continue;
            add(token, WarningKind::misread,
                say("{0} is read as the digits of the constant, even in quotes",
                    shown(token.text)));
        }
    }

    [[nodiscard]] std::string name_of(const Node& node) const {
        return m_tree.tokens[node.token].lower();
    }

    void find_wrong_count(std::size_t index) {
        const Node& node = m_tree.nodes[index];
        const FormulaToken& token = m_tree.tokens[node.token];
        const auto [fewest, most] = argument_counts(token.function->kinds);
        if (node.children.size() < fewest) {
            m_explained.push_back(index);
            add(token, WarningKind::too_few, say("{0}: too few arguments", name_of(node)));
        } else if (node.children.size() > most) {
            m_explained.push_back(index);
            add(token, WarningKind::too_many, say("{0}: too many arguments", name_of(node)));
        }
    }

    // Operators that bind otherwise than people expect: relations before sums and products, a sign
    // before a power, and what follows a relation as a whole before the relation.
    void find_surprising_order(std::size_t index) {
        const Node& node = m_tree.nodes[index];
        const bool is_infix = node.type == Node::Type::operation && node.children.size() == 2;
        for (std::size_t i = 0; is_infix && i < 2; ++i) {
            const Node& child = m_tree.nodes[node.children[i]];
            if (child.type != Node::Type::operation || child.in_parentheses) continue;
            const FormulaToken& outer = m_tree.tokens[node.token];
            const FormulaToken& inner = m_tree.tokens[child.token];
            const bool joins = outer.is("and") || outer.is("or");
            const bool surprising =
                outer.is("^") ? i == 0 && child.children.size() == 1 && inner.is("-")
                : outer.kind == TokenKind::symbol ? inner.kind == TokenKind::word
                : joins                           ? outer.is("and") && inner.is("or")
                                                  : inner.kind == TokenKind::word;
            if (!surprising) continue;
            add(inner, WarningKind::misread,
                say("'{0}' binds before '{1}' here; put what belongs together in parentheses",
                    inner.lower(), outer.lower()));
        }
    }

    // One for each operator or call is enough.
    void find_wrong_kind(std::size_t index) {
        const Node& node = m_tree.nodes[index];
        if (node.type == Node::Type::leaf || node.type == Node::Type::missing) return;
        for (std::size_t i = 0; i < node.children.size(); ++i) {
            const Node& operand = m_tree.nodes[node.children[i]];
            const Kind kind = m_kinds[node.children[i]];
            const Kind wanted = wanted_kind(m_tree, node, i);
            if (kind == Kind::open || wanted == Kind::open || kind == wanted) continue;
            m_explained.push_back(index);
            add(operand.begin, operand.end - operand.begin, WarningKind::wrong_kind,
                wrong_kind_message(name_of(node), i + 1, wanted == Kind::text));
            return;
        }
    }

    void add_pending(const PendingFault& fault) {
        const Node& node = m_tree.nodes[fault.node];
        const FormulaToken& token = m_tree.tokens[node.token];
        const std::string name = name_of(node);
        using What = PendingFault::What;
        if (fault.what == What::joins_inside) {
            add(token, WarningKind::cannot_succeed,
                say("a strcat as a further text breaks the one around it; put it first"));
        } else if (fault.what == What::takes_from_other) {
            add(token, WarningKind::cannot_succeed,
                say("{0} takes what the call around it needs; give {0} all its arguments", name));
        } else if (std::ranges::find(m_explained, fault.node) != m_explained.end()) {
            return;
        } else if (name == "left" || name == "right") {
            add(token, WarningKind::cannot_succeed,
                say("{0} cannot succeed here, for want of a second number; write {1}", name,
                    name == "left" ? "strsub(text, 1, n)" : "strsub(text, 1, n, 0)"));
        } else {
            add(token, WarningKind::cannot_succeed,
                say("{0} cannot succeed here: another call takes its arguments", name));
        }
    }

    std::string_view m_formula;
    Tree m_tree;
    std::vector<Kind> m_kinds;
    Pending m_pending;
    std::vector<std::size_t> m_explained;  // calls of which more need not be said
    std::vector<Warning> m_warnings;
};

}  // namespace

std::vector<Warning> warnings_of(std::string_view formula, const KindOfName& kind_of_name) {
    return Finder(formula, kind_of_name).run();
}

Message wrong_kind_message(std::string_view name, std::size_t operand, bool wants_text) {
    if (wants_text) return say("{0}: operand {1} must be a text", name, operand);
    if (name == "=" || name == "<>") {
        return say("{0}: operand {1} must be a number; texts are compared with equal", name,
                   operand);
    }
    if (name == "+") {
        return say("{0}: operand {1} must be a number; texts are joined with strcat", name,
                   operand);
    }
    return say("{0}: operand {1} must be a number", name, operand);
}

}  // namespace morandel::cli
