#pragma once

#include <cstddef>
#include <span>

/// Sends and receives records on a stream socket. A record comes whole: the kernel takes it as one piece.
namespace SvgPipe {

/// Sends a record; with `descriptor` 0 or higher, that goes along. False where the other side has gone, or
/// where a socket that does not wait has no room.
bool send(int socket, std::span<const std::byte> record, int descriptor = -1);

/// Waits for a record. Returns how many of its bytes have come: fewer than asked for where the other side
/// sends something else, 0 where it has gone. A descriptor that comes along goes to `descriptor`, which the
/// caller closes; further ones are closed. Null where none is expected: all are closed.
std::size_t receive(int socket, std::span<std::byte> record, int* descriptor = nullptr);

/// The bytes of a record.
template <typename Record>
std::span<const std::byte> bytesOf(const Record& record) {
    return std::as_bytes(std::span<const Record, 1>(&record, 1));
}
template <typename Record>
std::span<std::byte> writableBytesOf(Record& record) {
    return std::as_writable_bytes(std::span<Record, 1>(&record, 1));
}

} // namespace SvgPipe
