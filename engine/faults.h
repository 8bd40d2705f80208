// What is told of the last fault.

#pragma once

#include <string>

#include "base/value.h"

namespace morandel {

struct Faults {
    int& m_Status;                // 1 while there is none
    std::string& m_ErrorMessage;  // bytes of code page 936
    int m_ErrorNumber = -1;       // -1 where there is none

    // A number that no error has changes the status alone.
    void serror(int n) {
        m_Status = 0;
        const auto message = error_message(n);
        if (!message) return;
        m_ErrorMessage = *message;
        m_ErrorNumber = n;
    }
    void serror(Error error) {
        if (error != Error::none) serror(static_cast<int>(error));
    }
    void forget() {
        m_Status = 1;
        m_ErrorMessage.clear();
        m_ErrorNumber = -1;
    }
};

}  // namespace morandel
