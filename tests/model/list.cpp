#include "tests/model/list.h"

#include <deque>

namespace model {

List::List(const List& other) : m_strError(other.m_strError), m_nResultType(other.m_nResultType) {
    if (!other.m_records->empty()) m_records = other.m_records;
}

List& List::operator=(const List& other) {
    if (this == &other) return *this;
    m_strError = other.m_strError;
    m_nResultType = other.m_nResultType;
    m_records =
        other.m_records->empty() ? std::make_shared<std::vector<Record>>() : other.m_records;
    return *this;
}

int List::Append(int type, const std::string& name, double value, const std::string& formula) {
    m_records->push_back({type, name, value, "", formula, false});
    return 1;
}

int List::AppendString(int type, const std::string& name, const std::string& text,
                       const std::string& formula) {
    m_records->push_back({type, name, 0.0, text, formula, true});
    return 1;
}

int List::Free() {
    m_records = std::make_shared<std::vector<Record>>();
    return 1;
}

int List::DeleteOneNodeByName(const std::string& name) {
    Record* record = find(name);
    if (record == nullptr) return 0;
    m_records->erase(m_records->begin() + (record - m_records->data()));
    return 1;
}

Record* List::find(const std::string& name) {
    for (Record& record : *m_records) {
        if (record.name == name) return &record;
    }
    return nullptr;
}

Record* List::FindByName(const std::string& name) {
    Record* record = find(name);
    return record != nullptr || m_records->empty() ? record : m_records->data();
}

int List::GetExpressionError() {
    const Express temporary;
    return 0;
}

// Variables wait in line; one whose formula cannot be evaluated yet goes back to its end. What a
// variable does not have, the number or the text, stays in the parameter from the one before.
int List::Cal() {
    Express e;
    Para para;
    std::deque<std::string> queue;
    const auto fill = [&para](const Record& record) {
        para.name = record.name;
        if (record.is_string) {
            para.strValue = record.text;
        } else {
            para.value = record.value;
        }
    };
    int slot = 0;
    for (const Record& listed : *m_records) {
        const Record& record = *find(listed.name);
        e.SetNumberOfPara(++slot);
        fill(record);
        e.SetPara(&para, slot, record.is_string);
        queue.push_back(listed.name);
    }
    const std::size_t count = m_records->size();
    int index = 1;
    for (std::size_t attempts = 1; !queue.empty(); ++attempts) {
        Record& record = *find(queue.front());
        queue.pop_front();
        if (record.type == 1) {
            e.SetNumberOfPara(index);
            fill(record);
            e.SetPara(&para, index++, record.is_string);
        } else {
            if (e.SetExpression(record.formula.c_str()) == 0) return fail(e);
            if (e.CalcExpression() == 0) {
                queue.push_back(record.name);
            } else {
                m_nResultType = e.GetResultType();
                if (m_nResultType == type_text) {
                    para.strValue = record.text = e.m_StrResult;
                } else {
                    para.value = record.value = e.GetResult();
                }
                para.name = record.name;
                e.SetNumberOfPara(index);
                e.SetPara(&para, index++, false);
            }
        }
        if (attempts > count * (count + 1)) return fail(e);
    }
    return 1;
}

int List::fail(const Express& e) {
    m_strError = e.m_ErrorMessage;
    return 0;
}

}  // namespace model
