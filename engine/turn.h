// Who may evaluate.

#pragma once

namespace morandel {

// Held by a thread while it evaluates beside others: where the process shares its pending numbers
// only one may, else nothing is waited for.
class Turn {
  public:
    Turn();
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
};

}  // namespace morandel
