#pragma once

#include <cstddef>
#include <span>
#include <utility>

/// Memory that a program shares with its SVG worker: a document, or the pixels of a drawing.
class SharedMemory {
  public:
    SharedMemory() = default;
    /// Takes over a descriptor that the other side has sent, or the -1 of none.
    explicit SharedMemory(int descriptor) : m_descriptor(descriptor) {}
    ~SharedMemory();
    SharedMemory(SharedMemory&& other) noexcept { *this = std::move(other); }
    SharedMemory& operator=(SharedMemory&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        std::swap(m_mapped, other.m_mapped);
        return *this;
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    /// New memory, all zero. Nobody can change its size: to read it does not fail, whatever the other side
    /// does. Not open where there is none.
    static SharedMemory create(std::size_t bytes);
    /// New memory with these bytes. Not open where there is none.
    static SharedMemory holding(std::span<const std::byte> bytes);

    bool isOpen() const { return m_descriptor >= 0; }
    /// For sending to the other side.
    int descriptor() const { return m_descriptor; }

    /// The first `bytes` of it, in the address space of this process, as long as this object lives. Its
    /// descriptor is closed. Null where it has fewer, or where the process has no room.
    std::byte* map(std::size_t bytes);

  private:
    void closeDescriptor();

    int m_descriptor = -1;
    std::span<std::byte> m_mapped;
};
