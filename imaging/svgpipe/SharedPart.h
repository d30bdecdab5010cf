#pragma once

#include <cstddef>
#include <cstdint>

/// A part of memory that a program has in common with its SVG workers, in the address space of this process
/// as long as it lives.
class SharedPart {
  public:
    /// `memory` is a descriptor; `place`, a multiple of SvgPipe::placeBytes, and `bytes` are in bytes.
    SharedPart(int memory, std::uint64_t place, std::size_t bytes);
    ~SharedPart();
    SharedPart(const SharedPart&) = delete;
    SharedPart& operator=(const SharedPart&) = delete;

    /// Null where there is less memory, or no room for it.
    std::byte* bytes() const { return m_bytes; }

  private:
    std::byte* m_bytes = nullptr;
    std::size_t m_count;
};
