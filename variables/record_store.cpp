#include "variables/record_store.h"

#include <functional>
#include <iterator>

namespace morandel {

void RecordStore::append(const CVariableExpress& record) {
    m_records.push_back(record);
    CVariableExpress& added = m_records.back();
    added.m_pNext = nullptr;
    added.m_pStore = this;
    if (m_records.size() > 1) std::prev(m_records.end(), 2)->m_pNext = &added;
    if (!m_indexed) return;
    m_indexed = false;  // unless the next line is done with
    m_by_name[added.m_strName].push_back(std::prev(m_records.end()));
    m_indexed = true;
}

bool RecordStore::remove_first(std::string_view name) {
    if (!m_indexed) index();
    const auto named = m_by_name.find(name);
    if (named == m_by_name.end()) return false;
    const Records::iterator record = named->second.front();
    named->second.pop_front();
    if (named->second.empty()) m_by_name.erase(named);
    if (record != m_records.begin()) std::prev(record)->m_pNext = record->m_pNext;
    m_records.erase(record);
    return true;
}

CVariableExpress* RecordStore::find(std::string_view name) {
    if (!m_indexed) index();
    const auto named = m_by_name.find(name);
    return named == m_by_name.end() ? nullptr : &*named->second.front();
}

void RecordStore::index() {
    m_by_name.clear();
    for (auto record = m_records.begin(); record != m_records.end(); ++record) {
        m_by_name[record->m_strName].push_back(record);
    }
    m_indexed = true;
}

}  // namespace morandel
