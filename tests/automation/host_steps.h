// Case blocks as the calls a host of IComExpress would make, and what these must give. One player
// makes them through IDispatch, another writes them down as a script.

#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tests/case_file.h"

namespace morandel::hosts {

// Numbers, whole numbers, and texts in code page 936.
using HostValue = std::variant<double, int, std::string>;

// Instead of a method: what follows is called on a new object, so that nothing is left over.
constexpr const char* new_object = "";

struct Step {
    const char* method = new_object;
    std::vector<HostValue> inputs;
    // What the outputs must give; nothing for one that is not looked at.
    std::vector<std::optional<HostValue>> outputs;
    bool inexact = false;  // a transcendental function: to the last place
    int line = 0;          // of the case file

    [[nodiscard]] bool begins() const { return *method == '\0'; }  // is new_object
};

// Empty for a block that such a host cannot express: a sequence on one evaluator, a list whose
// records it cannot reach one by one.
std::vector<Step> steps_of(const cases::Block& block);

}  // namespace morandel::hosts
