// Reads the case files: formulas and what they must show, a line each. docs/testing.md has the
// format; the files are UTF-8, what is handed to the library is code page 936.

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace morandel::cases {

// A parameter, as "let name = value" gives it.
struct Let {
    std::string name;
    bool is_text = false;
    double number = 0.0;
    std::string text;
};

// What a line must show. What is not there is not looked at.
struct Expectation {
    bool refused = false;      // by SetExpression
    bool silent = false;       // refused without a message, status 1
    std::optional<int> error;  // of the evaluation, or of the refusal
    std::optional<int> expression_status;
    std::optional<double> number;  // to the last bit
    std::optional<std::string> text;
    std::optional<int> type;
    bool inexact = false;  // a transcendental function: to the last place
    std::optional<std::vector<std::pair<std::string, int>>> variables;
};

struct Line {
    int number = 0;          // in the file
    std::optional<Let> let;  // either this
    std::string formula;     // or a formula with
    Expectation expectation;
    std::string verb;     // or a call on a checker or a list, its operand in formula, with
    std::string outcome;  // what it must give, in the words of the replay
};

// Lines under one heading; of "a list", all are calls on one list. In a sequence they share an
// evaluator; else each formula has its own, after the lets above it.
struct Block {
    std::string name;
    bool is_sequence = false;
    bool is_list = false;
    std::vector<Line> lines;
};

// Throws std::runtime_error with file and line for what it cannot read.
std::vector<Block> read_case_file(const std::filesystem::path& file);
std::vector<Block> read_cases(std::string_view text, const std::string& source);

}  // namespace morandel::cases
