#include "cli/output.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace morandel::cli {

std::string number_text(double number) {
    const double size = std::abs(number);
    const bool written_out = size == 0.0 || (size >= 1e-5 && size < 1e17);
    std::array<char, 64> text{};
    const auto written =
        std::to_chars(text.data(), text.data() + text.size(), number,
                      written_out ? std::chars_format::fixed : std::chars_format::general);
    return {text.data(), written.ptr};
}

std::string type_name(int type) {
    return type == type_integer ? "integer" : type == type_number ? "number" : "string";
}

std::string value_text(const Outcome& outcome) {
    return outcome.type == type_text ? outcome.text : number_text(outcome.number);
}

std::string failure_text(const Outcome& outcome) {
    if (outcome.error < 0) return outcome.message;
    return outcome.message + " (error " + std::to_string(outcome.error) + ")";
}

nlohmann::json outcome_json(const Outcome& outcome) {
    nlohmann::json object{{"value", nullptr},
                          {"type", nullptr},
                          {"status", outcome.succeeded ? 1 : 0},
                          {"error", nullptr},
                          {"message", outcome.message}};
    if (outcome.error >= 0) object["error"] = outcome.error;
    if (!outcome.succeeded) return object;
    object["type"] = type_name(outcome.type);
    if (outcome.type == type_text) {
        object["value"] = outcome.text;
    } else if (std::isfinite(outcome.number)) {
        object["value"] = outcome.number;
    } else {
        object["value"] = number_text(outcome.number);
    }
    return object;
}

void print_line(const std::string& line) {
    if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size() ||
        std::fputc('\n', stdout) == EOF) {
        throw std::runtime_error("standard output cannot be written");
    }
}

void print_line(const nlohmann::json& object) {
    // A message may quote bytes that are no UTF-8.
    print_line(object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void print_problem(const std::string& problem) {
    (void)std::fflush(stdout);  // so that a terminal or a log shows both in order
    const std::string line = "morandel: " + problem + "\n";
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
    (void)std::fflush(stderr);  // some systems buffer it
}

bool print_definition(const std::string& name, const Outcome& outcome, bool as_json) {
    if (as_json) {
        nlohmann::json object = outcome_json(outcome);
        object["name"] = name;
        print_line(object);
    } else if (!outcome.succeeded) {
        print_problem(name + ": " + failure_text(outcome));
    } else if (outcome.type == type_text) {
        print_line(name + " = \"" + outcome.text + "\"");
    } else {
        print_line(name + " = " + number_text(outcome.number));
    }
    return outcome.succeeded;
}

int print_outcome(const Outcome& outcome, bool as_json) {
    if (as_json) {
        print_line(outcome_json(outcome));
    } else if (outcome.succeeded) {
        print_line(value_text(outcome));
    }
    if (!outcome.succeeded && !as_json) print_problem(failure_text(outcome));
    return outcome.succeeded ? 0 : 1;
}

}  // namespace morandel::cli
