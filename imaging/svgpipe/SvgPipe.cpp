#include "imaging/svgpipe/SvgPipe.h"

#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

#ifdef MSG_NOSIGNAL
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif
#ifdef MSG_CMSG_CLOEXEC
constexpr int receiveFlags = MSG_CMSG_CLOEXEC;
#else
constexpr int receiveFlags = 0;
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

/// Makes a call of the kernel until no signal interrupts it.
template <typename Call>
ssize_t uninterrupted(Call call) {
    ssize_t result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

bool SvgPipe::send(int socket, std::span<const std::byte> record, int descriptor) {
    iovec part{const_cast<std::byte*>(record.data()), record.size()}; // NOLINT: sendmsg does not write there
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
    return uninterrupted([&] { return ::sendmsg(socket, &message, sendFlags); }) ==
           static_cast<ssize_t>(record.size());
}

std::size_t SvgPipe::receive(int socket, std::span<std::byte> record, int* descriptor) {
    if (descriptor != nullptr)
        *descriptor = -1;
    iovec part{record.data(), record.size()};
    ControlBuffer control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = &control;
    message.msg_controllen = sizeof control;
    const ssize_t received = uninterrupted([&] { return ::recvmsg(socket, &message, receiveFlags); });
    if (received <= 0)
        return 0;
    takeDescriptors(message, descriptor);
    return static_cast<std::size_t>(received);
}
