#include "cli/tree.h"

#include <array>
#include <utility>

namespace morandel::cli {
namespace {

// Each level reads what binds more tightly first. The words and relations are tried once each, in
// this order, and take all that follows as their right side.
class Reader {
  public:
    explicit Reader(std::string_view formula) { m_tree.tokens = tokens_of(formula); }

    Tree read() {
        m_tree.root = sum();
        m_tree.stopped = m_at;
        return std::move(m_tree);
    }

  private:
    [[nodiscard]] const FormulaToken& current() const { return m_tree.tokens[m_at]; }
    void next() {
        if (m_at + 1 < m_tree.tokens.size()) ++m_at;
    }

    std::size_t add(Node node) {
        m_tree.nodes.push_back(std::move(node));
        return m_tree.nodes.size() - 1;
    }

    std::size_t operation(std::size_t token, std::vector<std::size_t> operands) {
        Node node;
        node.type = Node::Type::operation;
        node.token = token;
        node.begin = m_tree.nodes[operands.front()].begin;
        node.end =
            operands.size() > 1 ? m_tree.nodes[operands.back()].end : m_tree.tokens[token].end();
        node.children = std::move(operands);
        return add(std::move(node));
    }

    std::size_t chain(std::array<std::string_view, 2> symbols, std::size_t (Reader::*operand)()) {
        std::size_t left = (this->*operand)();
        while (current().is(symbols[0]) || current().is(symbols[1])) {
            const std::size_t token = m_at;
            next();
            const std::size_t right = (this->*operand)();
            left = operation(token, {left, right});
        }
        return left;
    }

    std::size_t sum() { return chain({"+", "-"}, &Reader::product); }
    std::size_t product() { return chain({"*", "/"}, &Reader::relation); }

    std::size_t relation() {
        static constexpr std::array<std::string_view, 12> in_order = {
            "^", "!", "and", "<=", ">=", "<>", ">", "<", "=", "or", "like", "equal"};
        std::size_t left = prefixed();
        for (const std::string_view symbol : in_order) {
            if (!current().is(symbol)) continue;
            const std::size_t token = m_at;
            next();
            left = symbol == "!" ? operation(token, {left}) : operation(token, {left, relation()});
        }
        return left;
    }

    std::size_t prefixed() {
        const FormulaToken& token = current();
        const bool is_call = token.kind == TokenKind::function;
        if (!is_call && !token.is("+") && !token.is("-")) return primary(nullptr);
        Node node;
        node.type = is_call ? Node::Type::call : Node::Type::operation;
        node.token = m_at;
        node.begin = token.position;
        next();
        const std::size_t operand = primary(&node);
        if (node.children.empty()) node.children.push_back(operand);
        node.end = m_at == 0 ? node.begin : m_tree.tokens[m_at - 1].end();
        return add(std::move(node));
    }

    // What stands in parentheses; all of it is taken as arguments where there is a function.
    std::size_t primary(Node* call) {
        if (!current().is("(")) return leaf();
        const std::size_t begin = current().position;
        next();
        const std::size_t first = sum();
        if (call != nullptr) call->children.push_back(first);
        while (current().is(",")) {
            next();
            const std::size_t further = sum();
            if (call != nullptr) call->children.push_back(further);
        }
        if (current().is(")")) {
            if (call == nullptr) {
                m_tree.nodes[first].in_parentheses = true;
                m_tree.nodes[first].begin = begin;
                m_tree.nodes[first].end = current().end();
            }
            next();
        }
        return first;
    }

    std::size_t leaf() {
        const FormulaToken& token = current();
        Node node;
        node.token = m_at;
        node.begin = token.position;
        node.end = token.end();
        const bool is_operand = token.kind == TokenKind::number || token.kind == TokenKind::text ||
                                token.kind == TokenKind::name || token.kind == TokenKind::constant;
        if (is_operand) {
            next();
        } else {
            node.type = Node::Type::missing;
            node.end = node.begin;
        }
        return add(std::move(node));
    }

    Tree m_tree;
    std::size_t m_at = 0;
};

}  // namespace

Tree tree_of(std::string_view formula) { return Reader(formula).read(); }

}  // namespace morandel::cli
