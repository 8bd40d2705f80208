// What it takes to read a formula with the engine.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/faults.h"
#include "engine/parameters.h"
#include "engine/registers.h"
#include "engine/token_reader.h"
#include "formula/recording.h"

namespace morandel::formula {

// The formula's tokens, with parameters of the names' kinds.
struct Reading {
    Reading(const std::string& formula, const std::vector<std::string>& names, Kinds texts) {
        registers.make_room(formula.size());
        parameters.set_count(static_cast<int>(names.size()));
        for (std::size_t i = 0; i < names.size(); ++i) {
            parameters.set(i, names[i], texts[i], 0.0, {});
        }
        tokens.cut(formula.c_str());
    }

    Registers registers;
    Parameters parameters{registers};
    TokenReader tokens{parameters};
};

struct Verdict {
    int status = 1;
    std::string message;
    Faults faults{status, message};
};

}  // namespace morandel::formula
