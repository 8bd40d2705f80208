// Who may evaluate.

#pragma once

namespace morandel {

// Where the process shares its pending numbers, waits until no other thread evaluates.
void begin_turn();
void end_turn();

// Held by a thread while it evaluates beside others.
class Turn {
  public:
    Turn() { begin_turn(); }
    ~Turn() { end_turn(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
};

}  // namespace morandel
