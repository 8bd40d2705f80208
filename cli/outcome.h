// What an evaluation gave: a value, or what went wrong with it.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "cli/messages.h"
#include "cli/tokens.h"

namespace morandel::cli {

// As the library numbers the types of results and of free names.
enum ResultType : int { result_integer = 0, result_number = 1, result_text = 2 };

using Given = std::variant<double, std::string>;  // a number, or a text in code page 936

struct Variable {
    std::string name;  // code page 936
    Given value;
};

struct Outcome {
    bool succeeded = false;
    int type = result_integer;
    double number = 0.0;  // of a result that is no text
    std::string text;     // UTF-8, of a result that is one

    // Of a failure.
    int error = -1;               // the library's number, -1 where it gives none
    std::string library_message;  // UTF-8
    Message message;
    bool is_numbered = true;       // whether the number says the same as the message
    std::string picture;           // the formula with a mark under what is wrong; may be empty
    int line = 0;                  // where the name stands that failed, for one from a file
    std::ptrdiff_t position = -1;  // of that, in bytes of the formula; -1 where it is not known
};

// The outcome of what did not come to the library.
Outcome failed(Message message);

// The outcome of a value that is there.
Outcome outcome_of(const Given& value);
// The result of a success, to be given to a name.
Given given_of(const Outcome& outcome);

inline Kind kind_of(const Given& value) {
    return std::holds_alternative<double>(value) ? Kind::number : Kind::text;
}

}  // namespace morandel::cli
