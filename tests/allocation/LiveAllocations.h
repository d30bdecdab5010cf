#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// The addresses of all memory that is allocated and not yet freed. Takes no memory itself.
class LiveAllocations {
  public:
    void clear() {
        m_slots.fill(free);
        m_count = 0;
    }

    void add(const void* place) {
        const auto value = reinterpret_cast<std::uintptr_t>(place);
        std::size_t at = slotOf(value);
        for (std::size_t tried = 0; m_slots[at] > gone; at = next(at)) {
            if (++tried == slots)
                std::abort(); // no operation here allocates so much
        }
        m_slots[at] = value;
        ++m_count;
    }

    void remove(const void* place) {
        const auto value = reinterpret_cast<std::uintptr_t>(place);
        std::size_t at = slotOf(value);
        for (std::size_t tried = 0; m_slots[at] != free && tried < slots; ++tried, at = next(at)) {
            if (m_slots[at] == value) {
                m_slots[at] = m_slots[next(at)] == free ? free : gone;
                --m_count;
                return;
            }
        }
    }

    std::size_t count() const { return m_count; }

  private:
    static constexpr std::size_t slots = std::size_t{1} << 15U;
    // These two numbers are never the address of allocated memory.
    static constexpr std::uintptr_t free = 0;
    static constexpr std::uintptr_t gone = 1;

    static std::size_t next(std::size_t at) { return (at + 1) % slots; }
    static std::size_t slotOf(std::uintptr_t value) {
        return static_cast<std::size_t>(value * 0x9e3779b97f4a7c15U >> 49U);
    }

    std::array<std::uintptr_t, slots> m_slots{};
    std::size_t m_count = 0;
};
