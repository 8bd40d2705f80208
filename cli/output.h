// How the command shows what it found.

#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cli/evaluate.h"

namespace morandel::cli {

// The shortest digits that read back to the same number, written out from 1e-5 up to 1e17.
std::string number_text(double number);

std::string type_name(int type);  // "integer", "number", "string"
std::string value_text(const Outcome& outcome);

// "message (error 34)", for a failed outcome.
std::string failure_text(const Outcome& outcome);

// One JSON object: value, type, status, error, message. JSON has no infinities and no NaN; they
// are given as strings.
nlohmann::json outcome_json(const Outcome& outcome);

// Prints a line to standard output, or throws where that cannot be written.
void print_line(const std::string& line);
void print_line(const nlohmann::json& object);
void print_problem(const std::string& problem);

// Prints "name = value", a text in quotes; a failure goes to standard error. False for a failure.
bool print_definition(const std::string& name, const Outcome& outcome, bool as_json);

// Prints the outcome; 0 for a success, 1 for a failure, as the command exits with.
int print_outcome(const Outcome& outcome, bool as_json);

}  // namespace morandel::cli
