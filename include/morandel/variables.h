// The face of the variables: named values and formulas that are computed together.
//
//     CVariableExpressList list;
//     list.Append(CVariableExpress::given, "price", 12.5, "");
//     list.Append(CVariableExpress::computed, "total", 0.0, "price*3");
//     if (list.Cal() == 1)
//         use(list.FindByNameAndGetValue("total"));   // 37.5
//     else
//         report(list.m_strError);                    // bytes of code page 936

#pragma once

#include <memory>
#include <string>

#include <morandel/export.h>

namespace morandel {
class RecordStore;
}

// One named variable: a given value, or a formula over other variables. Texts are bytes of code
// page 936 and are stored unchanged, empty names too; null counts as empty.
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

// Records stay in the order they were appended; names may repeat, and the first one counts. Names
// are compared byte for byte. A null text counts as empty. A list serves one thread at a time, and
// so do all copies that share its records, but for letting go of them.
class MORANDEL_EXPORT CVariableExpressList {
  public:
    CVariableExpressList();
    // A copy of a list with records shares them: what is set, appended or deleted through one is
    // seen through the other. Each lets go of them by itself, with Free or at its end.
    CVariableExpressList(const CVariableExpressList& other);
    CVariableExpressList& operator=(const CVariableExpressList& other);
    ~CVariableExpressList();

    int Append(int type, const char* name, double value, const char* exp);                // gives 1
    int AppendString(int type, const char* name, const char* strvalue, const char* exp);  // gives 1

    // Leaves this list empty; m_strError and m_nResultType stay. Gives 1.
    int Free();

    // Destroys the first record of that name; 0 where there is none.
    int DeleteOneNodeByName(const char* name);

    // The first record of that name. Deliberate: the head of the list for an unknown name, null
    // only on an empty list. The list owns it; it lives until it is deleted or let go of.
    CVariableExpress* FindByName(const char* name);
    // The same record's number or text; 0.0 and an empty text on an empty list.
    double FindByNameAndGetValue(const char* name);
    std::string FindByNameAndGetStrValue(const char* name);

    // The first record, null on an empty list; CVariableExpress::GetNext leads on.
    [[nodiscard]] CVariableExpress* GetHead() const;

    // Writes neither output and gives 0; like any new evaluator, it empties the pending numbers.
    int GetExpressionError(int* a, int* b);

    // Computes all variables whose kind is not 1, each as soon as what it uses is settled, and
    // stores the results in the records. 0 where a formula is refused, or where n * (n + 1)
    // attempts at n records did not settle all; m_strError then has the evaluator's message, and
    // what was settled keeps its new value. A text result is stored as text, but formulas after it
    // see the number that was handed on last.
    int Cal();

    std::string m_strError;  // of the last Cal that failed
    int m_nResultType = 0;   // of the formula evaluated last: 0 or 1 number, 2 text

  private:
    int m_nSpare = 0;  // only carried over by copies
    std::shared_ptr<morandel::RecordStore> m_pRecords;
};
