// The records of a list, shared by its copies: in the order they came, found by name without a
// walk, and gone when the last list that holds them is.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <morandel/variables.h>

namespace morandel {

class RecordStore {
  public:
    [[nodiscard]] bool empty() const { return m_size == 0; }
    [[nodiscard]] std::size_t size() const { return m_size; }
    CVariableExpress* head() { return m_first == nullptr ? nullptr : &*m_first->record; }

    // Appends a record made of these.
    template <class... Parts>
    void append(const Parts&... parts) {
        if (m_spare == nullptr) add_chunk();
        m_spare->record.emplace(parts...);
        take_in_spare();
    }
    bool remove_first(std::string_view name);
    // Keeps room for as many records as most lists have.
    void clear();
    // The first record of that name, or null.
    CVariableExpress* find(std::string_view name);
    // In list order, for each record the first one of its name.
    template <class Visit>
    void each_first_of_name(const Visit& visit) {
        if (!m_indexed) index();
        for (Node* node = m_first; node != nullptr; node = node->next) {
            visit(m_names_repeat ? *find(node->record->m_strName) : *node->record);
        }
    }

    // Without the copies that GetName, GetStrValue and GetExp make.
    static const std::string& name_of(const CVariableExpress& record) { return record.m_strName; }
    static const std::string& text_of(const CVariableExpress& record) { return record.m_strValue; }
    static const std::string& formula_of(const CVariableExpress& record) { return record.m_strExp; }

    // Records tell when their names are set, so that the next search sees it.
    void names_changed() { m_indexed = false; }

  private:
    // What a spare node holds but for the next one is not set.
    struct Node {
        std::optional<CVariableExpress> record;
        Node* previous;
        Node* next;
        Node* next_of_name;
        // What the first record of a name has besides.
        Node* last_of_name;
        Node* next_in_bucket;
        std::size_t hash;
    };

    // Each chunk is twice as large as the one before, up to 512 nodes.
    static std::size_t size_of_chunk(std::size_t chunk) { return chunk < 7 ? 4U << chunk : 512; }
    void add_chunk();
    void chain(std::size_t chunk);
    void take_in_spare();
    Node* find_node(std::string_view name, std::size_t hash);
    Node* find_node(std::string_view name);
    void index();
    void index_name(Node& node);
    Node*& bucket(std::size_t hash) { return m_buckets[hash % m_buckets.size()]; }

    // Nodes are made by the chunk. Those without a record are chained, to be used again.
    std::vector<std::unique_ptr<Node[]>> m_chunks;
    Node* m_spare = nullptr;

    Node* m_first = nullptr;
    Node* m_last = nullptr;
    std::size_t m_size = 0;

    // The first record of each name, by the hash of that. Made when a record is looked for, and
    // kept up from then on.
    std::vector<Node*> m_buckets;
    bool m_indexed = false;
    bool m_names_repeat = false;
};

}  // namespace morandel
