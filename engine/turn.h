// Who may evaluate.

#pragma once

#include <mutex>

namespace morandel {

// To be held by a thread while it evaluates beside others: where the process shares its pending
// numbers only one may, else nothing is waited for.
[[nodiscard]] std::unique_lock<std::mutex> take_turn();

}  // namespace morandel
