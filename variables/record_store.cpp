#include "variables/record_store.h"

#include <bit>
#include <functional>
#include <utility>

namespace morandel {

void RecordStore::add_chunk() {
    const std::size_t chunk = m_chunks.size();
    m_chunks.push_back(std::make_unique_for_overwrite<Node[]>(size_of_chunk(chunk)));
    chain(chunk);
}

void RecordStore::chain(std::size_t chunk) {
    for (std::size_t i = size_of_chunk(chunk); i-- > 0;) {
        Node& node = m_chunks[chunk][i];
        node.next = std::exchange(m_spare, &node);
    }
}

void RecordStore::clear() {
    constexpr std::size_t chunks_kept = 4;
    for (Node* node = m_first; node != nullptr; node = node->next) node->record.reset();
    m_first = m_last = m_spare = nullptr;
    m_size = 0;
    m_indexed = false;
    if (m_chunks.size() > chunks_kept) {
        m_chunks.resize(chunks_kept);
        m_buckets = {};
    }
    for (std::size_t i = m_chunks.size(); i-- > 0;) chain(i);
}

// Puts the first spare node, which has its record, to the end of the list.
void RecordStore::take_in_spare() {
    Node& node = *m_spare;
    m_spare = node.next;
    node.record->m_pStore = this;
    node.previous = m_last;
    node.next = nullptr;
    if (m_last == nullptr) {
        m_first = &node;
    } else {
        m_last->next = &node;
        m_last->record->m_pNext = &*node.record;
    }
    m_last = &node;
    ++m_size;
    if (m_size > m_buckets.size()) m_indexed = false;
    if (m_indexed) index_name(node);
}

bool RecordStore::remove_first(std::string_view name) {
    Node* const node = find_node(name);
    if (node == nullptr) return false;

    Node** place = &bucket(node->hash);
    while (*place != node) place = &(*place)->next_in_bucket;
    if (Node* const successor = node->next_of_name) {
        successor->last_of_name = node->last_of_name;
        successor->next_in_bucket = node->next_in_bucket;
        successor->hash = node->hash;
        *place = successor;
    } else {
        *place = node->next_in_bucket;
    }

    (node->next == nullptr ? m_last : node->next->previous) = node->previous;
    (node->previous == nullptr ? m_first : node->previous->next) = node->next;
    if (node->previous != nullptr) node->previous->record->m_pNext = node->record->m_pNext;
    --m_size;
    node->record.reset();
    node->next = std::exchange(m_spare, node);
    return true;
}

CVariableExpress* RecordStore::find(std::string_view name) {
    Node* const node = find_node(name);
    return node == nullptr ? nullptr : &*node->record;
}

RecordStore::Node* RecordStore::find_node(std::string_view name, std::size_t hash) {
    Node* node = bucket(hash);
    while (node != nullptr && (node->hash != hash || node->record->m_strName != name)) {
        node = node->next_in_bucket;
    }
    return node;
}

RecordStore::Node* RecordStore::find_node(std::string_view name) {
    if (!m_indexed) index();
    return find_node(name, std::hash<std::string_view>()(name));
}

// With room for as many records again.
void RecordStore::index() {
    m_buckets.assign(std::bit_ceil(2 * m_size + 1), nullptr);
    m_names_repeat = false;
    m_indexed = true;
    for (Node* node = m_first; node != nullptr; node = node->next) index_name(*node);
}

void RecordStore::index_name(Node& node) {
    const std::string_view name = node.record->m_strName;
    const std::size_t hash = std::hash<std::string_view>()(name);
    node.next_of_name = nullptr;
    if (Node* const first = find_node(name, hash)) {
        m_names_repeat = true;
        first->last_of_name->next_of_name = &node;
        first->last_of_name = &node;
    } else {
        node.last_of_name = &node;
        node.hash = hash;
        node.next_in_bucket = std::exchange(bucket(hash), &node);
    }
}

}  // namespace morandel
