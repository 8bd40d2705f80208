// The records of a list, shared by its copies: in the order they came, found by name without a
// walk, and gone when the last list that holds them is.

#pragma once

#include <cstddef>
#include <deque>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "variables/variable_express.h"

namespace morandel {

class RecordStore {
  public:
    [[nodiscard]] bool empty() const { return m_records.empty(); }
    [[nodiscard]] std::size_t size() const { return m_records.size(); }
    CVariableExpress* head() { return m_records.empty() ? nullptr : &m_records.front(); }

    void append(const CVariableExpress& record);
    bool remove_first(std::string_view name);
    // The first record of that name, or null.
    CVariableExpress* find(std::string_view name);

    // Without the copy that GetName makes.
    static const std::string& name_of(const CVariableExpress& record) { return record.m_strName; }

    // Records tell when their names are set, so that the next search sees it.
    void names_changed() { m_indexed = false; }

  private:
    using Records = std::list<CVariableExpress>;

    // Lets the map be asked with a view.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };

    void index();

    Records m_records;
    // All records of a name, in list order.
    std::unordered_map<std::string, std::deque<Records::iterator>, Hash, std::equal_to<>> m_by_name;
    bool m_indexed = true;
};

}  // namespace morandel
