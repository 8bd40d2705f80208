// What the checker requires, as tables.

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace morandel {

// How many commas the arguments of a call may have.
struct Commas {
    int fewest;  // 0 where too few arguments are not looked for
    int most;    // -1 where too many are not
};

// A function's row. Adding a function means a row here and one in engine/functions.cpp.
struct CheckRule {
    char code;
    const char* name;                // as records show it
    int first_kind;                  // of the first argument
    int first_fault;                 // recorded where it does not fit
    std::string_view further_kinds;  // of the 2nd, 3rd ... argument; those past the end are not
                                     // checked, '*' repeats the one before it
    std::optional<Commas> commas;    // none where the call neither checks its further arguments nor
                                     // forgets them when it ends
    bool closes_step;
    int result_kind;
};

const CheckRule* rule_of_code(char code);

struct OperatorRule {
    char code;
    const char* name;
    int kind;  // of both operands
    int left_fault;
    int right_fault;
};

const OperatorRule* rule_of_operator(char code);

// The kind that an operand or argument of a recorded name should have, from 1; -1 for one that is
// not checked.
int expected_kind(std::string_view name, int index);

// The kind of the argument with so many commas before it, by a rule's further_kinds; -1 likewise.
int further_kind(std::string_view kinds, std::size_t comma);

// Whether an operand of a kind can stand where another is expected.
bool fits(int kind, int expected);

}  // namespace morandel
