// What keeps a fuzzer from spending its time on megabytes, which are tested elsewhere, and what
// stops it where the library and its model differ.

#pragma once

#include <algorithm>
#include <cstdio>
#include <string>

#include "tests/model/words.h"
#include "tests/pair.h"

constexpr std::size_t large = 1'000'000;

// Each strcat can double a text.
inline int strcats(std::string formula) {
    std::ranges::transform(formula, formula.begin(), model::to_lower);
    int calls = 0;
    for (std::size_t at = formula.find("strcat"); at != std::string::npos;
         at = formula.find("strcat", at + 1)) {
        ++calls;
    }
    return calls;
}

inline bool may_grow_large(const std::string& formula) { return strcats(formula) > 5; }

inline std::size_t pending_bytes(const morandel::pairs::Evaluators& pair) {
    std::size_t bytes = 0;
    for (const std::string& text : pair.model().pending_texts()) bytes += text.size();
    return bytes;
}

inline void stop_at(const morandel::pairs::Difference& difference) {
    if (difference.none()) return;
    std::fputs((difference.text() + '\n').c_str(), stderr);
    __builtin_trap();
}
