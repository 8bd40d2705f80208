// Records and their list, all but its calculation.

#include <utility>

#include <morandel/express.h>
#include <morandel/variables.h>
#include "variables/record_store.h"

using morandel::RecordStore;

namespace {

const char* text_or_empty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

CVariableExpress::CVariableExpress() = default;

CVariableExpress::CVariableExpress(int type, const char* name, double value, const char* exp)
    : m_nType(type),
      m_strName(text_or_empty(name)),
      m_dValue(value),
      m_strExp(text_or_empty(exp)) {}

CVariableExpress::CVariableExpress(int type, const char* name, const char* strvalue,
                                   const char* exp)
    : CVariableExpress(type, name, 0.0, exp) {
    m_strValue = text_or_empty(strvalue);
    m_bString = true;
}

CVariableExpress::CVariableExpress(const CVariableExpress& other)
    : m_nType(other.m_nType),
      m_strName(other.m_strName),
      m_dValue(other.m_dValue),
      m_strValue(other.m_strValue),
      m_strExp(other.m_strExp),
      m_bString(other.m_bString),
      m_pNext(other.m_pNext) {}

CVariableExpress& CVariableExpress::operator=(const CVariableExpress& other) {
    if (this == &other) return *this;
    CVariableExpress copy(other);
    m_nType = copy.m_nType;
    m_strName.swap(copy.m_strName);
    m_dValue = copy.m_dValue;
    m_strValue.swap(copy.m_strValue);
    m_strExp.swap(copy.m_strExp);
    m_bString = copy.m_bString;
    if (m_pStore == nullptr) {
        m_pNext = copy.m_pNext;
    } else {
        m_pStore->names_changed();
    }
    return *this;
}

CVariableExpress::~CVariableExpress() = default;

int CVariableExpress::GetType() { return m_nType; }

int CVariableExpress::SetType(int type) { return m_nType = type; }

int CVariableExpress::GetName(std::string& out) {
    out = m_strName;
    return 1;
}

int CVariableExpress::SetName(const char* name) {
    m_strName = text_or_empty(name);
    if (m_pStore != nullptr) m_pStore->names_changed();
    return 1;
}

double CVariableExpress::GetValue() { return m_dValue; }

int CVariableExpress::SetValue(double value) {
    m_dValue = value;
    return 1;
}

std::string CVariableExpress::GetStrValue() { return m_strValue; }

int CVariableExpress::SetStrValue(std::string value) {
    m_strValue = std::move(value);
    return 1;
}

int CVariableExpress::GetExp(std::string& out) {
    out = m_strExp;
    return 1;
}

int CVariableExpress::SetExp(const char* exp) {
    m_strExp = text_or_empty(exp);
    return 1;
}

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
        // To ask is not to wait for what another thread did before it let go; to let go is.
        std::shared_ptr(m_pRecords).reset();
        m_pRecords->clear();
    } else {
        m_pRecords = std::make_shared<RecordStore>();
    }
    return 1;
}

int CVariableExpressList::DeleteOneNodeByName(const char* name) {
    return m_pRecords->remove_first(text_or_empty(name)) ? 1 : 0;
}

CVariableExpress* CVariableExpressList::FindByName(const char* name) {
    CVariableExpress* record = m_pRecords->find(text_or_empty(name));
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

CVariableExpress* CVariableExpressList::GetHead() const { return m_pRecords->head(); }

int CVariableExpressList::GetExpressionError(int* /*a*/, int* /*b*/) {
    const CExpress temporary;
    return 0;
}
