// The library and its model side by side: every call goes to both, and all that a host can see of
// them is compared.

#pragma once

#include <array>
#include <sstream>
#include <string>

#include <morandel.h>
#include "tests/model/checker.h"
#include "tests/model/express.h"
#include "tests/model/list.h"

namespace morandel::pairs {

// To the last bit; any NaN is the same as any other.
bool same_number(double a, double b);

// The first difference seen; what follows it counts no more.
class Difference {
  public:
    [[nodiscard]] bool none() const { return m_text.empty(); }
    [[nodiscard]] const std::string& text() const { return m_text; }

    template <class A, class B>
    void expect(const char* what, const A& library, const B& model) {
        if (library == model || !none()) return;
        std::ostringstream out;
        out << what << ": " << library << ", the model has " << model;
        m_text = out.str();
    }
    void expect_number(const char* what, double library, double model);

  private:
    std::string m_text;
};

// All that can be read from two evaluators.
void compare(CExpress& library, model::Express& model, Difference& difference);

class Evaluators {
  public:
    void set_count(int count);
    void set_number(int index, const std::string& name, double value);
    void set_text(int index, const std::string& name, const std::string& text);
    int load(const char* formula);  // may be null
    int load(const std::string& formula) { return load(formula.c_str()); }
    int load_own_message();
    int verify();
    int calculate();
    void clear();

    [[nodiscard]] const Difference& difference() const { return m_difference; }
    [[nodiscard]] const CExpress& library() const { return m_library; }
    [[nodiscard]] const model::Express& model() const { return m_model; }

  private:
    int seen(const char* call, int library, int model);

    CExpress m_library;
    model::Express m_model;
    Difference m_difference;
};

class Checkers {
  public:
    void set_number(int index, const std::string& name, double value);
    void set_text(int index, const std::string& name, const std::string& text);
    bool check(const std::string& formula);
    int count_commas();
    void reset();
    void init_step();
    void forget_arguments();
    int calculate();

    [[nodiscard]] const Difference& difference() const { return m_difference; }
    [[nodiscard]] const CExpressionCheck& library() const { return m_library; }

  private:
    int seen(const char* call, int library, int model);

    CExpressionCheck m_library;
    model::Checker m_model;
    Difference m_difference;
};

// Lists that may share their records.
class Lists {
  public:
    static constexpr std::size_t count = 3;

    void append(std::size_t list, int type, const std::string& name, double value,
                const std::string& formula);
    void append_string(std::size_t list, int type, const std::string& name, const std::string& text,
                       const std::string& formula);
    void assign(std::size_t to, std::size_t from);
    void free(std::size_t list);
    int remove(std::size_t list, const std::string& name);
    void rename(std::size_t list, const std::string& name, const std::string& new_name);
    void set(std::size_t list, const std::string& name, int type, double value,
             const std::string& text, const std::string& formula);
    int calculate(std::size_t list);
    void expression_error(std::size_t list);

    [[nodiscard]] const Difference& difference() const { return m_difference; }
    [[nodiscard]] std::size_t size(std::size_t list) { return m_model[list].records().size(); }

  private:
    int seen(const char* call, int library, int model);

    std::array<CVariableExpressList, count> m_library;
    std::array<model::List, count> m_model;
    Difference m_difference;
};

}  // namespace morandel::pairs
