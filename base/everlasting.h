// An object that is never destroyed: a host may still call while its own static objects go.

#pragma once

#include <utility>

namespace morandel {

template <class Type>
union Everlasting {
    template <class... Arguments>
    constexpr explicit Everlasting(Arguments&&... arguments)
        : value{std::forward<Arguments>(arguments)...} {}
    Everlasting(const Everlasting&) = delete;
    Everlasting& operator=(const Everlasting&) = delete;
    constexpr ~Everlasting() {}

    Type value;
};

}  // namespace morandel
