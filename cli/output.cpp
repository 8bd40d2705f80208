#include "cli/output.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/file_problem.h"

namespace morandel::cli {

std::string type_name(int type) {
    return type == result_integer ? "integer" : type == result_number ? "number" : "string";
}

std::string value_text(const Outcome& outcome, const NumberFormat& numbers) {
    return outcome.type == result_text ? outcome.text : numbers.text(outcome.number);
}

Message failure_message(const Outcome& outcome) {
    if (outcome.error < 0 || !outcome.is_numbered) return outcome.message;
    return say("{0} (error {1})", outcome.message, outcome.error);
}

nlohmann::json outcome_json(const Outcome& outcome, const NumberFormat& numbers) {
    const std::string& own = outcome.library_message;
    nlohmann::json object{{"value", nullptr},
                          {"type", nullptr},
                          {"status", outcome.succeeded ? 1 : 0},
                          {"error", nullptr},
                          {"message", own.empty() ? outcome.message.chinese : own},
                          {"message_en", outcome.message.english},
                          {"position", nullptr}};
    if (outcome.error >= 0) object["error"] = outcome.error;
    if (outcome.position >= 0) object["position"] = outcome.position;
    if (!outcome.succeeded) return object;
    object["type"] = type_name(outcome.type);
    if (outcome.type == result_text) {
        object["value"] = outcome.text;
    } else if (std::isfinite(outcome.number)) {
        object["value"] = numbers.rounded(outcome.number);
    } else {
        object["value"] = numbers.text(outcome.number);
    }
    return object;
}

void print_text(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        throw Problem(cannot_write_output());
    }
}

void print_line(const std::string& line) { print_text(line + '\n'); }

namespace {

// A message may quote bytes that are no UTF-8.
std::string dumped(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

void print_line(const nlohmann::json& object) { print_line(dumped(object)); }

void print_line(const nlohmann::json& object, const NumberFormat& numbers) {
    if (!numbers.is_plain() || !object.at("value").is_number()) return print_line(object);
    const NumberFormat plain({}, true);
    std::string line;
    for (const auto& [key, value] : object.items()) {
        line += line.empty() ? '{' : ',';
        line += dumped(key) + ':';
        line += key == "value" ? plain.text(value.get<double>()) : dumped(value);
    }
    print_line(line + '}');
}

void print_problem(const Message& problem, const std::string& picture) {
    print_note(Paint::problem, "morandel:", problem, picture);
}

// Those of two bytes too.
std::string without_control(std::string_view text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
        const bool has_two = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        shown += byte < 0x20 || byte == 0x7F || has_two ? '?' : text[i];
        if (has_two) ++i;
    }
    return shown;
}

void print_note(Paint paint, std::string_view label, const Message& text,
                const std::string& picture) {
    (void)std::fflush(stdout);  // so that a terminal or a log shows both in order
    std::string note = painted(paint, label, stderr) + ' ' + without_control(text.shown()) + '\n';
    if (!picture.empty()) note += painted_picture(picture, stderr) + '\n';
    (void)std::fwrite(note.data(), 1, note.size(), stderr);
    (void)std::fflush(stderr);  // some systems buffer it
}

std::string painted_picture(const std::string& picture, std::FILE* stream) {
    const std::size_t mark = picture.find_last_of(' ') + 1;
    return picture.substr(0, mark) + painted(Paint::mark, picture.substr(mark), stream);
}

bool print_definition(const std::string& name, const Outcome& outcome, const Style& style) {
    if (style.json) {
        nlohmann::json object = outcome_json(outcome, style.numbers);
        object["name"] = name;
        print_line(object, style.numbers);
    } else if (!outcome.succeeded) {
        print_problem(say("{0}: {1}", name, failure_message(outcome)), outcome.picture);
    } else if (outcome.type == type_text) {
        print_line(name + " = \"" + outcome.text + "\"");
    } else {
        print_line(name + " = " + style.numbers.text(outcome.number));
    }
    return outcome.succeeded;
}

int print_outcome(const Outcome& outcome, const Style& style) {
    if (style.json) {
        print_line(outcome_json(outcome, style.numbers), style.numbers);
    } else if (outcome.succeeded) {
        print_line(value_text(outcome, style.numbers));
    }
    if (!outcome.succeeded && !style.json) print_problem(failure_message(outcome), outcome.picture);
    return outcome.succeeded ? 0 : 1;
}

}  // namespace morandel::cli
