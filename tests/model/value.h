// What the levels hand to each other, and what calls leave for one another.

#pragma once

#include <cmath>
#include <string>
#include <vector>

namespace model {

enum ResultType : int { type_integer = 0, type_number = 1, type_text = 2 };

struct Value {
    double number = 0.0;
    std::string text;
    ResultType type = type_integer;
};

inline constexpr double range_bound = 1.7e+308;
inline bool in_range(double number) { return !(std::abs(number) > range_bound); }

// Numbers of further arguments, 0 being the second argument.
struct ExtraArguments {
    static constexpr double not_given = 1000000.0;
    static constexpr std::size_t kept = 4;

    double values[kept] = {not_given, not_given, not_given, not_given};
};

// The first argument of the last strcat that had a second one, with the number of texts that were
// pending then.
struct StringArgument {
    std::string text;
    std::size_t index = 0;
};

// The numbers of further arguments of all evaluators; the construction of any empties it.
inline std::vector<double> g_NumArray;

}  // namespace model
