#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <type_traits>

namespace tessel {

/// Sends one message of so many bytes, with a descriptor unless that is negative.
/// @returns false with errno set after a failure
[[nodiscard]] bool sendMessage(int socket, const void* bytes, std::size_t count, int descriptor);

/// Waits for one message of exactly so many bytes. Descriptors beyond the first are closed.
/// @param descriptor gets the one that came with it, or none
/// @returns false when the other side is gone, or has sent something else
[[nodiscard]] bool receiveMessage(int socket, void* bytes, std::size_t count, FileDescriptor& descriptor);

template <typename Message>
[[nodiscard]] bool send(int socket, const Message& message, int descriptor = -1)
{
    static_assert(std::is_trivially_copyable_v<Message>);
    return sendMessage(socket, &message, sizeof message, descriptor);
}

template <typename Message>
[[nodiscard]] std::optional<Message> receive(int socket, FileDescriptor& descriptor)
{
    static_assert(std::is_trivially_copyable_v<Message>);
    Message message;
    return receiveMessage(socket, &message, sizeof message, descriptor) ? std::optional(message) : std::nullopt;
}

} // namespace tessel
