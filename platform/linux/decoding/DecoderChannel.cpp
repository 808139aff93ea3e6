#include "platform/linux/decoding/DecoderChannel.h"

#include "platform/linux/files/Uninterrupted.h"

#include <sys/socket.h>

#include <cstring>

namespace tessel {

namespace {

struct alignas(cmsghdr) Control {
    char bytes[CMSG_SPACE(sizeof(int))] = {};
};

/// Takes what the kernel has opened for this message. There is room for two, since headers are aligned.
FileDescriptor takeDescriptors(msghdr& message)
{
    FileDescriptor first;
    for (auto* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        const auto count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t index = 0; index < count; ++index) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header) + index * sizeof descriptor, sizeof descriptor);
            FileDescriptor taken(descriptor);
            if (!first.isOpen())
                first = std::move(taken);
        }
    }
    return first;
}

} // namespace

bool sendMessage(int socket, const void* bytes, std::size_t count, int descriptor)
{
    iovec content = {const_cast<void*>(bytes), count};
    Control control;
    msghdr message = {};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    if (descriptor >= 0) {
        message.msg_control = control.bytes;
        message.msg_controllen = sizeof control.bytes;
        auto* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    }
    const auto sent = uninterrupted([&] { return ::sendmsg(socket, &message, MSG_NOSIGNAL); });
    return sent == static_cast<ssize_t>(count);
}

bool receiveMessage(int socket, void* bytes, std::size_t count, FileDescriptor& descriptor)
{
    iovec content = {bytes, count};
    Control control;
    msghdr message = {};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof control.bytes;
    const auto received = uninterrupted([&] { return ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC); });
    if (received < 0)
        return false;
    descriptor = takeDescriptors(message);
    return received == static_cast<ssize_t>(count) && (message.msg_flags & MSG_TRUNC) == 0;
}

} // namespace tessel
