// The table by which MinGW's unwinder on 32-bit Windows finds its way through a module's functions.

#pragma once

#include <windows.h>

#include <span>

namespace morandel::automation {

using FrameTable = std::span<BYTE>;

// Empty for a module that has none.
FrameTable frame_table(HMODULE module);

// Makes copy, the bytes of original at another place, a table that says the same, but that what a
// frame does with an exception is asked from personality. False for a table of a kind that
// compilers for Windows do not write.
bool adapt(FrameTable copy, const BYTE* original, const void* personality);

}  // namespace morandel::automation
