// One named variable of a batch calculation: a given value, or a formula over other variables.

#pragma once

#include <string>

#include "engine/export.h"

namespace morandel {
class RecordStore;
}

// Texts are bytes of code page 936 and are stored unchanged, empty names too; null counts as
// empty.
//     CVariableExpress price(CVariableExpress::given, "price", 12.5, "");
//     CVariableExpress total(CVariableExpress::computed, "total", 0.0, "price*3");
class MORANDEL_EXPORT CVariableExpress {
  public:
    // Kinds: 1 has a given value, any other number is computed from the formula.
    static constexpr int computed = 0;
    static constexpr int given = 1;

    CVariableExpress();  // kind 1, value 0, empty texts
    CVariableExpress(int type, const char* name, double value, const char* exp);
    // A string variable; its number is 0.
    CVariableExpress(int type, const char* name, const char* strvalue, const char* exp);
    // A copy points at the same successor. A record that stands in a list keeps its own place
    // there when it is assigned to.
    CVariableExpress(const CVariableExpress& other);
    CVariableExpress& operator=(const CVariableExpress& other);
    ~CVariableExpress();

    int GetType();
    int SetType(int type);  // Deliberate: gives the type back, where the other setters give 1.
    int GetName(std::string& out);
    int SetName(const char* name);
    double GetValue();
    int SetValue(double value);
    std::string GetStrValue();
    int SetStrValue(std::string value);
    int GetExp(std::string& out);
    int SetExp(const char* exp);

    // Whether it was built as a string variable; no setter changes that.
    [[nodiscard]] bool IsString() const { return m_bString; }
    // The next record of the list, null at its end; owned by the list.
    [[nodiscard]] CVariableExpress* GetNext() const { return m_pNext; }

  private:
    friend class CVariableExpressList;
    friend class morandel::RecordStore;

    int m_nType = given;
    std::string m_strName;
    double m_dValue = 0.0;
    std::string m_strValue;
    std::string m_strExp;
    bool m_bString = false;
    CVariableExpress* m_pNext = nullptr;
    morandel::RecordStore* m_pStore = nullptr;  // where the record stands, if in a list
};
