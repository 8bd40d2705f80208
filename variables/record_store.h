// The records of a list, shared by its copies: in the order they came, found by name without a
// walk, and gone when the last list that holds them is.

#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "variables/variable_express.h"

namespace morandel {

class RecordStore {
  public:
    [[nodiscard]] bool empty() const { return m_nodes.empty(); }
    [[nodiscard]] std::size_t size() const { return m_nodes.size(); }
    CVariableExpress* head() { return m_nodes.empty() ? nullptr : &m_nodes.front().record; }

    // Appends a record made of these.
    template <class... Parts>
    void append(const Parts&... parts) {
        m_nodes.emplace_back(parts...);
        take_in();
    }
    bool remove_first(std::string_view name);
    // The first record of that name, or null.
    CVariableExpress* find(std::string_view name);
    // For each record the first one of its name.
    template <class Visit>
    void each_first_of_name(const Visit& visit) {
        if (!m_indexed) index();
        for (Node& node : m_nodes) visit(node.named->first->record);
    }

    // Without the copies that GetName and GetExp make.
    static const std::string& name_of(const CVariableExpress& record) { return record.m_strName; }
    static const std::string& formula_of(const CVariableExpress& record) { return record.m_strExp; }

    // Records tell when their names are set, so that the next search sees it.
    void names_changed() { m_indexed = false; }

  private:
    struct Node;
    using Nodes = std::list<Node>;

    // All records of a name, in list order.
    struct Named {
        Nodes::iterator first;
        Nodes::iterator last;
    };

    struct Node {
        template <class... Parts>
        explicit Node(const Parts&... parts) : record(parts...) {}

        CVariableExpress record;
        Named* named = nullptr;
        Nodes::iterator next_of_name;  // the end of the list where there is none
    };

    void take_in();
    void index();
    void index_name(Nodes::iterator node);

    Nodes m_nodes;
    // By names that the records hold. Made when a record is looked for, and kept up from then on.
    std::unordered_map<std::string_view, Named> m_by_name;
    bool m_indexed = false;
};

}  // namespace morandel
