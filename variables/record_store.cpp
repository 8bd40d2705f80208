#include "variables/record_store.h"

#include <iterator>
#include <utility>

namespace morandel {

// Links the last node, which is new, with what there is.
void RecordStore::take_in() {
    const auto node = std::prev(m_nodes.end());
    node->record.m_pNext = nullptr;
    node->record.m_pStore = this;
    node->next_of_name = m_nodes.end();
    if (m_nodes.size() > 1) std::prev(node)->record.m_pNext = &node->record;
    if (!m_indexed) return;
    m_indexed = false;  // unless the next line is done with
    index_name(node);
    m_indexed = true;
}

void RecordStore::index_name(Nodes::iterator node) {
    const auto [named, is_new] = m_by_name.try_emplace(node->record.m_strName, Named{node, node});
    node->named = &named->second;
    if (is_new) return;
    named->second.last->next_of_name = node;
    named->second.last = node;
}

bool RecordStore::remove_first(std::string_view name) {
    if (!m_indexed) index();
    const auto named = m_by_name.find(name);
    if (named == m_by_name.end()) return false;
    const auto node = named->second.first;
    // The key lies in the record that goes.
    auto entry = m_by_name.extract(named);
    if (node->next_of_name != m_nodes.end()) {
        entry.mapped().first = node->next_of_name;
        entry.key() = entry.mapped().first->record.m_strName;
        m_by_name.insert(std::move(entry));
    }
    if (node != m_nodes.begin()) std::prev(node)->record.m_pNext = node->record.m_pNext;
    m_nodes.erase(node);
    return true;
}

CVariableExpress* RecordStore::find(std::string_view name) {
    if (!m_indexed) index();
    const auto named = m_by_name.find(name);
    return named == m_by_name.end() ? nullptr : &named->second.first->record;
}

void RecordStore::index() {
    m_by_name.clear();
    m_by_name.reserve(m_nodes.size());
    for (auto node = m_nodes.begin(); node != m_nodes.end(); ++node) {
        node->next_of_name = m_nodes.end();
        index_name(node);
    }
    m_indexed = true;
}

}  // namespace morandel
