// How the command shows what it found.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "cli/color.h"
#include "cli/commands.h"
#include "cli/number_format.h"
#include "cli/outcome.h"

namespace morandel::cli {

struct Style {
    Style() = default;
    explicit Style(const Request& request)
        : json(request.json),
          quiet(request.quiet),
          strict(request.strict),
          numbers(request.decimals, request.plain) {}

    bool json = false;
    bool quiet = false;   // no warnings
    bool strict = false;  // warnings are failures
    NumberFormat numbers;
};

std::string type_name(int type);  // "integer", "number", "string"
std::string value_text(const Outcome& outcome, const NumberFormat& numbers = {});

// "message (error 34)", for a failed outcome.
Message failure_message(const Outcome& outcome);

// One JSON object: value, type, status, error; message in Chinese, the library's own where it has
// one, and message_en; position in bytes of the formula. JSON has no infinities and no NaN; they
// are given as strings.
nlohmann::json outcome_json(const Outcome& outcome, const NumberFormat& numbers = {});

// Prints a line to standard output, or throws where that cannot be written.
void print_text(std::string_view text);
void print_line(const std::string& line);
void print_line(const nlohmann::json& object);
// Its value without an exponent where the numbers are plain.
void print_line(const nlohmann::json& object, const NumberFormat& numbers);

// What a file holds must neither steer a terminal nor look like lines of the command's own: control
// characters and line ends become question marks.
std::string without_control(std::string_view text);

// Prints "morandel: ..." to standard error, and what shows the place below it.
void print_problem(const Message& problem, const std::string& picture = {});

void print_note(Paint paint, std::string_view label, const Message& text,
                const std::string& picture);
std::string painted_picture(const std::string& picture, std::FILE* stream);

// Prints "name = value", a text in quotes; a failure goes to standard error. False for a failure.
bool print_definition(const std::string& name, const Outcome& outcome, const Style& style);

// Prints the outcome; 0 for a success, 1 for a failure, as the command exits with.
int print_outcome(const Outcome& outcome, const Style& style);

}  // namespace morandel::cli
