#pragma once

#include <cstdint>

/// Gives up what drawing does not need, before anything of a document is read.
namespace Confinement {

/// The descriptor of the memory in common with the program, from then on.
inline constexpr int memory = 3;

/// Limits the process to so many seconds of processor time and bytes of address space, and closes every
/// descriptor but `sharedMemory` and the first three. From here on it can't start processes, open sockets,
/// write to files, or change its limits; its children have no rights that it has not. What is left is reading
/// files, as fonts. Where the kernel has no such filter, only the limits hold. False where any of this fails.
bool enter(int sharedMemory, std::uint64_t processorSeconds, std::uint64_t addressSpace);

} // namespace Confinement
