// The way that most formulas take: numbers, numeric parameters, + - * / ^, comparisons and
// functions of one number are checked and compiled in one pass over the text.

#pragma once

#include <string_view>

#include "engine/parameters.h"
#include "engine/program.h"

namespace morandel {

// Where the formula is one of those, well formed, and all its names are numbers at hand, the
// program computes it, as long as the parameters keep their generation. All else, and whatever
// could be an error, is left to tokenizer, grammar check and levels.
struct Compilation {
    bool done = false;
    // The first name that is not at hand, where nothing else stood in the way: until there is such
    // a parameter, evaluations can only fail, and they leave nothing behind.
    std::string_view missing_name;
};
Compilation compile(const char* formula, const Parameters& parameters, Program& program);

}  // namespace morandel
