#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

struct UnmapPart {
    std::size_t bytes = 0;
    void operator()(std::byte* start) const;
};

/// A part of the memory that a program has in common with its SVG workers, in the address space of this
/// process as long as it lives.
using SharedPart = std::unique_ptr<std::byte[], UnmapPart>;

/// `memory` is a descriptor; `place`, a multiple of SvgPipe::placeBytes, and `bytes` are in bytes. Null where
/// there is less memory, or no room for it.
SharedPart sharedPart(int memory, std::uint64_t place, std::size_t bytes);
