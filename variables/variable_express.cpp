#include "variables/variable_express.h"

#include <utility>

#include "variables/record_store.h"

namespace {

const char* text_or_empty(const char* text) {
    return text == nullptr ? "" : text;
}

}  // namespace

CVariableExpress::CVariableExpress() = default;

CVariableExpress::CVariableExpress(int type, const char* name, double value, const char* exp)
    : m_nType(type),
      m_strName(text_or_empty(name)),
      m_dValue(value),
      m_strExp(text_or_empty(exp)) {}

CVariableExpress::CVariableExpress(int type, const char* name, const char* strvalue,
                                   const char* exp)
    : m_nType(type),
      m_strName(text_or_empty(name)),
      m_strValue(text_or_empty(strvalue)),
      m_strExp(text_or_empty(exp)),
      m_bString(true) {}

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

int CVariableExpress::GetType() {
    return m_nType;
}

int CVariableExpress::SetType(int type) {
    m_nType = type;
    return m_nType;
}

int CVariableExpress::GetName(std::string& out) {
    out = m_strName;
    return 1;
}

int CVariableExpress::SetName(const char* name) {
    m_strName = text_or_empty(name);
    if (m_pStore != nullptr) m_pStore->names_changed();
    return 1;
}

double CVariableExpress::GetValue() {
    return m_dValue;
}

int CVariableExpress::SetValue(double value) {
    m_dValue = value;
    return 1;
}

std::string CVariableExpress::GetStrValue() {
    return m_strValue;
}

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
