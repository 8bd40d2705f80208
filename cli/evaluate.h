// One evaluation as the command sees it: UTF-8 in, UTF-8 out.

#pragma once

#include <morandel.h>

#include <string>
#include <string_view>
#include <vector>

#include "cli/outcome.h"

namespace morandel::cli {

// Makes them the parameters of an evaluator; UsageError for more than it takes.
void declare(CExpress& express, const std::vector<Variable>& variables);

struct FreeVariable {
    std::string name;  // UTF-8
    int type;
};

class Evaluator {
  public:
    void set_variables(std::vector<Variable> variables);
    // Further names that have values, to be suggested for one that has none.
    void set_known_names(std::vector<std::string> names) { m_known_names = std::move(names); }

    // Loads a formula (UTF-8); a failed outcome tells why not.
    Outcome load(std::string_view formula);
    Outcome evaluate(std::string_view formula);
    // What another evaluator says of the formula that is loaded here.
    Outcome failure_of(CExpress& express);
    std::vector<FreeVariable> free_variables();
    std::vector<std::string> free_names();  // in code page 936

  private:
    Outcome load_converted(std::string_view formula);
    Outcome evaluate_loaded();
    Outcome failure(CExpress& express, bool loaded);
    void explain(Outcome& outcome, bool loaded);

    CExpress m_express;
    std::string m_formula;  // the one loaded, in code page 936
    std::vector<Variable> m_variables;
    std::vector<std::string> m_known_names;
};

}  // namespace morandel::cli
