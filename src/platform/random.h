// The system's random generator.
#pragma once

#include <array>
#include <cstdint>

namespace vndoc6::platform {

// As many as every system gives at once.
using RandomBytes = std::array<uint8_t, 256>;

// Fills `bytes`. Raises error 5 when the system refuses.
void FillRandomly(RandomBytes& bytes);

// How many forks lie between this process and the one that first asked: what a process keeps in
// memory, its child has too, and this alone differs. Whoever makes a process by a bare system call
// goes round it.
uint32_t ForkCount();

}  // namespace vndoc6::platform
