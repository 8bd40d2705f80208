// The calls of the C interface on errors and warnings.

#include <array>
#include <string>
#include <vector>

#include <morandel/errors.h>

#include "base/everlasting.h"
#include "formula/handles.h"

namespace {

using namespace morandel::formula;

struct Message {
    int number;
    std::string chinese;
    std::string english;
};

std::vector<Message> all_messages() {
    std::vector<Message> rows;
    for (const morandel::ErrorText& row : morandel::error_table()) {
        const Report report = report_of_number(static_cast<int>(row.number));
        rows.push_back({report.number, report.message, report.english});
    }
    return rows;
}

// In UTF-8, made when the first is asked for.
const Message* find_message(int number) {
    static const morandel::Everlasting<std::vector<Message>> messages(all_messages());
    for (const Message& row : messages.value) {
        if (row.number == number) return &row;
    }
    return nullptr;
}

const char* give_message(int number, std::string Message::*text, std::size_t* size) {
    if (size != nullptr) *size = 0;
    const char* given = nullptr;
    (void)attempt(nullptr, [&] {
        const Message* row = find_message(number);
        if (row != nullptr) given = give_text(&(row->*text), size);
    });
    return given;
}

}  // namespace

int morandel_error_number(const morandel_error* error) {
    return error == nullptr ? -1 : error->report.number;
}

int morandel_error_reason(const morandel_error* error) {
    return error == nullptr ? int{MORANDEL_REASON_NUMBERED} : error->report.reason;
}

const char* morandel_error_message(const morandel_error* error, size_t* size) {
    return give_text(error == nullptr ? nullptr : &error->report.message, size);
}

const char* morandel_error_english(const morandel_error* error, size_t* size) {
    return give_text(error == nullptr ? nullptr : &error->report.english, size);
}

int morandel_error_position(const morandel_error* error, morandel_position* position) {
    if (error == nullptr || position == nullptr || !error->report.position) return 0;
    *position = *error->report.position;
    return 1;
}

int morandel_error_value(const morandel_error* error) {
    return error == nullptr ? -1 : error->report.value;
}

void morandel_error_free(morandel_error* error) {
    if (error != no_memory()) delete error;
}

const char* morandel_message(int number, size_t* size) {
    return give_message(number, &Message::chinese, size);
}

const char* morandel_english_message(int number, size_t* size) {
    return give_message(number, &Message::english, size);
}
