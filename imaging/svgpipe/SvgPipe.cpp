#include "imaging/svgpipe/SvgPipe.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

#ifdef MSG_NOSIGNAL
constexpr int sendFlags = MSG_NOSIGNAL | MSG_DONTWAIT;
#else
constexpr int sendFlags = MSG_DONTWAIT;
#endif
#ifdef MSG_CMSG_CLOEXEC
constexpr int receiveFlags = MSG_CMSG_CLOEXEC | MSG_DONTWAIT;
#else
constexpr int receiveFlags = MSG_DONTWAIT;
#endif

/// Room for the descriptors of one message; the kernel drops those beyond it.
constexpr std::size_t mostDescriptors = 4;
union ControlBuffer {
    cmsghdr header; // aligns the bytes
    char bytes[CMSG_SPACE(mostDescriptors * sizeof(int))];
};

/// Takes the descriptors of a message: the first to `kept`, where that is free, and the others are closed.
void takeDescriptors(msghdr& message, int* kept) {
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS)
            continue;
        const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(part) + i * sizeof(int), sizeof descriptor);
            if (kept != nullptr && *kept < 0)
                *kept = descriptor;
            else
                ::close(descriptor);
        }
    }
}

bool isToRepeat(ssize_t result, int socket, short event, const SvgPipe::Patience& patience, bool& isOver) {
    if (result >= 0)
        return false;
    if (errno == EINTR)
        return true;
    if (errno != EAGAIN && errno != EWOULDBLOCK)
        return false;
    isOver = !patience.wait(socket, event, patience.context);
    return !isOver;
}

} // namespace

SvgPipe::Patience SvgPipe::endless() {
    return {[](int socket, short event, void* /*context*/) {
        pollfd waiting{socket, event, 0};
        while (::poll(&waiting, 1, -1) < 0 && errno == EINTR) {
        }
        return true;
    }};
}

SvgPipe::Transfer SvgPipe::send(int socket, std::span<const std::byte> bytes, const Patience& patience,
                                int descriptor) {
    while (!bytes.empty()) {
        iovec part{const_cast<std::byte*>(bytes.data()),
                   bytes.size()}; // NOLINT: sendmsg does not write there
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        ControlBuffer control{};
        if (descriptor >= 0) {
            message.msg_control = &control;
            message.msg_controllen = CMSG_SPACE(sizeof descriptor);
            cmsghdr* header = CMSG_FIRSTHDR(&message);
            header->cmsg_level = SOL_SOCKET;
            header->cmsg_type = SCM_RIGHTS;
            header->cmsg_len = CMSG_LEN(sizeof descriptor);
            std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
        }
        const ssize_t sent = ::sendmsg(socket, &message, sendFlags);
        bool isOver = false;
        if (isToRepeat(sent, socket, POLLOUT, patience, isOver))
            continue;
        if (sent <= 0)
            return isOver ? Transfer::TimedOut : Transfer::Closed;
        bytes = bytes.subspan(static_cast<std::size_t>(sent));
        descriptor = -1;
    }
    return Transfer::Done;
}

SvgPipe::Transfer SvgPipe::receive(int socket, std::span<std::byte> bytes, const Patience& patience,
                                   int* descriptor) {
    if (descriptor != nullptr)
        *descriptor = -1;
    while (!bytes.empty()) {
        iovec part{bytes.data(), bytes.size()};
        ControlBuffer control{};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = &control;
        message.msg_controllen = sizeof control;
        const ssize_t received = ::recvmsg(socket, &message, receiveFlags);
        bool isOver = false;
        if (isToRepeat(received, socket, POLLIN, patience, isOver))
            continue;
        if (received <= 0)
            return isOver ? Transfer::TimedOut : Transfer::Closed;
        takeDescriptors(message, descriptor);
        bytes = bytes.subspan(static_cast<std::size_t>(received));
    }
    return Transfer::Done;
}
