// What is told of a refusal, a failure or a warning.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <morandel/c.h>

namespace morandel::formula {

// Part of a formula, in bytes of code page 936.
struct Extent {
    std::size_t begin = 0;
    std::size_t end = 0;
};

struct Report {
    int number = -1;
    int reason = MORANDEL_REASON_NUMBERED;
    std::string message;  // both UTF-8
    std::string english;
    std::optional<morandel_position> position;
    int value = -1;  // the place of the value or name that it is about
};

// Thrown within this folder; the calls of the C interface catch it.
struct Refused {
    Report report;
};

// Of an error of the table.
Report report_of_number(int number);

// Of one without a number. What it is about stands for the "{}" of its messages.
Report report_of_reason(int reason, std::string_view about = {});

[[noreturn]] void refuse(int reason, std::string_view about = {});
[[noreturn]] void refuse_misuse(std::string_view what);

// What callers hand over. Throw Refused for what they cannot.
std::string_view view(const char* text, std::size_t size);
bool is_text_type(int type);

}  // namespace morandel::formula
