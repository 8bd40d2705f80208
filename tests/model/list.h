// The slow, obvious list of variables: every attempt of a batch calculation is made.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/model/express.h"

namespace model {

struct Record {
    int type = 1;  // 1 has a given value, any other is computed
    std::string name;
    double value = 0.0;
    std::string text;
    std::string formula;
    bool is_string = false;
};

// Copies share the records, unless there are none.
class List {
  public:
    List() = default;
    List(const List& other);
    List& operator=(const List& other);

    int Append(int type, const std::string& name, double value, const std::string& formula);
    int AppendString(int type, const std::string& name, const std::string& text,
                     const std::string& formula);
    int Free();
    int DeleteOneNodeByName(const std::string& name);
    // The head where the name is unknown; null where the list is empty.
    Record* FindByName(const std::string& name);
    int GetExpressionError();
    int Cal();

    [[nodiscard]] std::vector<Record>& records() { return *m_records; }

    std::string m_strError;
    int m_nResultType = 0;

  private:
    Record* find(const std::string& name);
    int fail(const Express& e);

    std::shared_ptr<std::vector<Record>> m_records = std::make_shared<std::vector<Record>>();
};

}  // namespace model
