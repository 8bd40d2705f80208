// One evaluation as the command sees it: UTF-8 in, UTF-8 out.

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "morandel.h"

namespace morandel::cli {

// Wrong use of the command, exit status 2.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

using Given = std::variant<double, std::string>;  // a number, or a text in code page 936

struct Variable {
    std::string name;  // code page 936
    Given value;
};

// "name=value": a value that reads as a number is one, any other is a text, and "..." is a text
// without its quotes.
Variable read_variable(std::string_view definition);
Given read_value(std::string_view value);
// All operands but the first.
std::vector<Variable> read_variables(const std::vector<std::string>& operands);

// Makes them the parameters of an evaluator; UsageError for more than it takes.
void declare(CExpress& express, const std::vector<Variable>& variables);

// Whether a value in a file or at the prompt is one by itself: a number, or a text in quotes.
bool is_given_value(std::string_view value);

// The number that a whole text reads as: decimal, with a sign and an exponent at most.
bool read_number(std::string_view text, double& number);

struct Outcome {
    bool succeeded = false;
    int type = 0;         // 0 integer, 1 number, 2 string
    double number = 0.0;  // of a result that is no string
    std::string text;     // UTF-8, of a result that is one
    int error = -1;       // -1 where the library gives none
    std::string message;  // UTF-8, of a failure
};

// The result of a success, to be given to a name.
Given given_of(const Outcome& outcome);

// The outcome of what did not come to the library.
Outcome failed(std::string message);

struct FreeVariable {
    std::string name;  // UTF-8
    int type;
};

class Evaluator {
  public:
    void set_variables(const std::vector<Variable>& variables) { declare(m_express, variables); }

    // Loads a formula (UTF-8); a failed outcome tells why not.
    Outcome load(std::string_view formula);
    Outcome evaluate(std::string_view formula);
    std::vector<FreeVariable> free_variables();
    std::vector<std::string> free_names();  // in code page 936

  private:
    Outcome load_converted(std::string_view formula);
    Outcome failure(std::string_view formula);

    CExpress m_express;
};

}  // namespace morandel::cli
