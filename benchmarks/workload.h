// What is measured: formulas in the spelling of each language, their names and values, texts.

#pragma once

#include <string>
#include <vector>

namespace bench {

// Angles are degrees here and radians elsewhere, so those spellings convert.
struct Formula {
    const char* label;
    std::string morandel;
    std::string infix;  // as fparser and muParser read it
    std::string lua;
    std::vector<std::string> names;
};

// The twelve of the table, in its order.
const std::vector<Formula>& twelve();

// 64 different formulas of 7 to 60 bytes, made by a fixed rule.
const std::vector<Formula>& pool();

// Texts of 100 bytes: what is asked of them in each language.
struct TextFormula {
    const char* label;
    std::string morandel;
    std::string lua;
    bool gives_text;
};
const std::vector<TextFormula>& texts();

// A batch: v1 is given, the 49 others are each a formula over one or two earlier ones.
struct Definition {
    std::string name;
    Formula formula;
};
const std::vector<Definition>& batch();

// For the names of a formula; another round, other values. All lie between 1.1 and 4.6.
void fill(std::vector<double>& values, unsigned round);

}  // namespace bench
