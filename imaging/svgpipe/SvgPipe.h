#pragma once

#include <cstddef>
#include <span>

/// Sends and receives bytes and descriptors on a stream socket.
namespace SvgPipe {

/// Waits for an event of poll's on `socket`, at most until some moment. False where that has passed.
using Wait = bool (*)(int socket, short event, void* context);

/// How long a transfer may take: as long as `wait` answers true.
struct Patience {
    Wait wait;
    void* context = nullptr;
};

/// Waits as long as it takes.
Patience endless();

enum class Transfer {
    Done,
    Closed,   ///< the other side has gone
    TimedOut, ///< the patience was at its end
};

/// Sends all bytes; with `descriptor` 0 or higher, that goes along.
Transfer send(int socket, std::span<const std::byte> bytes, const Patience& patience, int descriptor = -1);

/// Fills all of `bytes`. A descriptor that comes along goes to `descriptor`, which the caller closes; further
/// ones are closed. Where there is none, it becomes -1. Null where none is expected: all are closed.
Transfer receive(int socket, std::span<std::byte> bytes, const Patience& patience, int* descriptor = nullptr);

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
