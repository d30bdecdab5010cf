#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

/// Owns a file descriptor and closes it in the destructor.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    /// Takes over a descriptor, or the -1 of a failed call.
    explicit FileDescriptor(int number) : m_number(number) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

    /// Closes it before the destructor does. Returns 0 or the errno of a failure; it is closed in both cases.
    int close() {
        const int number = std::exchange(m_number, -1);
        return number >= 0 && ::close(number) != 0 ? errno : 0;
    }

    /// Waits until the disk has what was written. Returns 0 or the errno of a failure.
    int sync() const;

  private:
    int m_number = -1;
};
