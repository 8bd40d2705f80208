#include "cli/outcome.h"

#include <utility>

#include "cli/encoding.h"

namespace morandel::cli {

Outcome failed(Message message) {
    Outcome outcome;
    outcome.message = std::move(message);
    return outcome;
}

Outcome outcome_of(const Given& value) {
    Outcome outcome;
    outcome.succeeded = true;
    outcome.type = result_number;
    if (const auto* text = std::get_if<std::string>(&value)) {
        outcome.type = result_text;
        outcome.text = to_utf8(*text);
    } else {
        outcome.number = std::get<double>(value);
    }
    return outcome;
}

Given given_of(const Outcome& outcome) {
    if (outcome.type == result_text) return to_gbk(outcome.text);
    return outcome.number;
}

}  // namespace morandel::cli
