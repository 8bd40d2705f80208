// What is behind the handles of the C interface, and how its calls end.

#pragma once

#include <atomic>
#include <cstddef>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <morandel/c.h>

#include "base/everlasting.h"
#include "formula/columns.h"
#include "formula/prepared.h"
#include "formula/report.h"

struct morandel_error {
    morandel::formula::Report report;
};

struct morandel_formula {
    template <class... Arguments>
    explicit morandel_formula(Arguments&&... arguments)
        : prepared(std::forward<Arguments>(arguments)...) {}

    std::atomic<std::size_t> owners = 1;
    const morandel::formula::Prepared prepared;
};

struct morandel_result {
    morandel::formula::Result result;
};

struct morandel_warnings {
    std::vector<morandel_error> warnings;
};

struct morandel_faults {
    std::vector<morandel::formula::CheckFault> faults;
};

struct morandel_texts {
    morandel::formula::Texts texts;
};

namespace morandel::formula {

// What a call gives where memory has run out. It is made when the library is loaded, since its
// texts may need memory.
inline Everlasting<morandel_error> memory_error(Report{-1, MORANDEL_REASON_NO_MEMORY, "内存不足",
                                                       "out of memory", std::nullopt, -1});
inline morandel_error* no_memory() { return &memory_error.value; }

inline void give(morandel_error** error, const Report& report) noexcept {
    if (error == nullptr) return;
    try {
        *error = new morandel_error{report};
    } catch (const std::bad_alloc&) {
        *error = no_memory();
    }
}

// Calls what may throw; 1 where it did not.
template <class Work>
int attempt(morandel_error** error, const Work& work) noexcept {
    if (error != nullptr) *error = nullptr;
    try {
        work();
        return 1;
    } catch (const Refused& refused) {
        give(error, refused.report);
    } catch (const std::exception&) {  // memory, or a text longer than there can be
        if (error != nullptr) *error = no_memory();
    }
    return 0;
}

template <class Handle>
Handle& used(Handle* handle) {
    if (handle == nullptr) refuse_misuse("NULL");
    return *handle;
}

// Without a text, an empty one.
inline const char* give_text(const std::string* text, std::size_t* size) {
    if (size != nullptr) *size = text == nullptr ? 0 : text->size();
    return text == nullptr ? "" : text->c_str();
}

}  // namespace morandel::formula
