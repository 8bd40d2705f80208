// Where numbers and names end.

#pragma once

#include "engine/characters.h"

namespace morandel {

// Digits with at most one point; 5. is a number, .5 is not.
inline const char* end_of_number(const char* next) {
    while (is_any(*next, digit)) ++next;
    if (*next == '.') {
        ++next;
        while (is_any(*next, digit)) ++next;
    }
    return next;
}

inline const char* end_of_name(const char* next) {
    while (!is_any(*next, delimiter | blank)) {
        const bool pair = is_any(*next, lead) && next[1] != '\0';
        next += pair ? 2 : 1;
    }
    return next;
}

}  // namespace morandel
