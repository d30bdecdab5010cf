#pragma once

#include <cstdint>

/// Gives up what drawing does not need, before anything of a document is read.
namespace Confinement {

/// Limits that the program which starts the worker chooses.
struct Limits {
    std::uint64_t processorSeconds = 0; ///< 0 for no limit here
    std::uint64_t memoryBytes = 0;      ///< of address space; 0 for no limit here
};

/// Sets the limits and closes every descriptor above the pipe's. False where that fails.
bool setLimits(const Limits& limits);

/// From here on the process can't start processes, open sockets, write to files, or change its limits; its
/// children have no rights that it has not. What is left is reading files, as fonts. Where the kernel has no
/// such filter, only the limits hold. False where the kernel has one and refuses it.
bool giveUpRights();

} // namespace Confinement
