// The list of variables, all but its calculation.

#include <utility>

#include "engine/express.h"
#include "variables/record_store.h"
#include "variables/variables.h"

using morandel::RecordStore;

namespace {

std::string_view view_of(const char* name) {
    return name == nullptr ? std::string_view() : std::string_view(name);
}

}  // namespace

CVariableExpressList::CVariableExpressList() : m_pRecords(std::make_shared<RecordStore>()) {}

CVariableExpressList::CVariableExpressList(const CVariableExpressList& other)
    : m_strError(other.m_strError),
      m_nResultType(other.m_nResultType),
      m_nSpare(other.m_nSpare),
      // Two empty lists have nothing to share.
      m_pRecords(other.m_pRecords->empty() ? std::make_shared<RecordStore>() : other.m_pRecords) {}

CVariableExpressList& CVariableExpressList::operator=(const CVariableExpressList& other) {
    if (this == &other) return *this;
    CVariableExpressList copy(other);
    m_strError.swap(copy.m_strError);
    m_nResultType = copy.m_nResultType;
    m_nSpare = copy.m_nSpare;
    m_pRecords.swap(copy.m_pRecords);
    return *this;
}

CVariableExpressList::~CVariableExpressList() = default;

int CVariableExpressList::Append(int type, const char* name, double value, const char* exp) {
    m_pRecords->append(type, name, value, exp);
    return 1;
}

int CVariableExpressList::AppendString(int type, const char* name, const char* strvalue,
                                       const char* exp) {
    m_pRecords->append(type, name, strvalue, exp);
    return 1;
}

int CVariableExpressList::Free() {
    if (m_pRecords.use_count() == 1) {
        m_pRecords->clear();
    } else {
        m_pRecords = std::make_shared<RecordStore>();
    }
    return 1;
}

int CVariableExpressList::DeleteOneNodeByName(const char* name) {
    return m_pRecords->remove_first(view_of(name)) ? 1 : 0;
}

CVariableExpress* CVariableExpressList::FindByName(const char* name) {
    CVariableExpress* record = m_pRecords->find(view_of(name));
    return record != nullptr ? record : GetHead();
}

double CVariableExpressList::FindByNameAndGetValue(const char* name) {
    CVariableExpress* record = FindByName(name);
    return record == nullptr ? 0.0 : record->GetValue();
}

std::string CVariableExpressList::FindByNameAndGetStrValue(const char* name) {
    CVariableExpress* record = FindByName(name);
    return record == nullptr ? std::string() : record->GetStrValue();
}

CVariableExpress* CVariableExpressList::GetHead() const {
    return m_pRecords->head();
}

int CVariableExpressList::GetExpressionError(int* /*a*/, int* /*b*/) {
    const CExpress temporary;
    return 0;
}
