// Takes any bytes for what a program sends to its SVG worker: the worker answers and comes to an end.

#include "imaging/svgpipe/SharedMemory.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"
#include "svgworker/Session.h"
#include "tests/fuzz/Require.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <thread>

namespace {

constexpr std::string_view document =
    "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><circle r='9'/></svg>";

void send(int socket, std::span<const std::byte> bytes, const SharedMemory& memory) {
    SvgPipe::send(socket, bytes, memory.descriptor());
}

/// Sends the bytes in records, each with shared memory; at first a document, if `isOpened`.
void sendAll(int socket, std::span<const std::byte> bytes, bool isOpened) {
    if (isOpened) {
        SvgPipe::Request request;
        request.documentBytes = document.size();
        send(socket, SvgPipe::bytesOf(request), SharedMemory::holding(std::as_bytes(std::span(document))));
    }
    constexpr std::size_t shared = 1 << 16;
    const SharedMemory memory = SharedMemory::create(shared);
    require(memory.isOpen());
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), sizeof(SvgPipe::Request));
        send(socket, bytes.first(count), memory);
        bytes = bytes.subspan(count);
    }
    ::shutdown(socket, SHUT_WR);
}

int lowestFreeDescriptor() {
    const int descriptor = ::dup(STDERR_FILENO);
    require(descriptor >= 0);
    ::close(descriptor);
    return descriptor;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const int firstFree = lowestFreeDescriptor();
    std::array<int, 2> ends{-1, -1};
    require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0);
    // As many as the socket holds answers for: they are read at the end.
    constexpr std::size_t mostBytes = 64 * sizeof(SvgPipe::Request);
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(1);
    std::thread program([&] {
        sendAll(ends[0], bytes.first(std::min(bytes.size(), mostBytes)), data[0] % 2 == 0);
        SvgPipe::Answer answer;
        while (const std::size_t count = SvgPipe::receive(ends[0], SvgPipe::writableBytesOf(answer)))
            require(count == sizeof answer && isValid(answer));
    });
    const int status = serve(ends[1]);
    require(status == 0 || status == SvgPipe::messageStatus);
    ::close(ends[1]);
    program.join();
    ::close(ends[0]);
    require(lowestFreeDescriptor() == firstFree); // the worker has closed what came along
    return 0;
}
