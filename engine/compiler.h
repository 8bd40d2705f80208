// The way that most formulas take: numbers, numeric parameters, + - * / ^, comparisons and
// functions of one number are checked and compiled in one pass over the text.

#pragma once

#include "engine/parameters.h"
#include "engine/program.h"

namespace morandel {

// True where the formula is one of those, well formed, and all its names are numbers at hand; then
// the program computes it, as long as the parameters keep their generation. All else, and
// whatever could be an error, is left to tokenizer, grammar check and levels.
bool compile(const char* formula, const Parameters& parameters, Program& program);

}  // namespace morandel
