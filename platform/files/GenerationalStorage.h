#pragma once

#include "platform/base/URL.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace tessel {

/// The file system that holds an object, by the number of its device; the second word is 0.
struct FileSystemIdentifier {
    std::uint32_t device = 0;
    std::uint32_t second = 0;
};

/// An object in a file system, by the low word of its file identifier; the high word is 0.
struct ObjectIdentifier {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
};

/// For `GenerationalStorage::openByIdentifier`: a final symbolic link is an error.
inline constexpr std::uint32_t kOpenWithoutFollowing = 0x100;

/// What an attribute query may ask for, in the order in which the reply has it.
namespace CommonAttributes {
inline constexpr std::uint32_t kDocumentIdentifier = 1;
inline constexpr std::uint32_t kFullPath = 2;
} // namespace CommonAttributes

namespace AttributeQueryOptions {
inline constexpr std::uint32_t kWithoutFollowing = 0x01;
inline constexpr std::uint32_t kExtendedCommonAttributes = 0x20;
} // namespace AttributeQueryOptions

/// The reply to a query for both attributes, numbers in the machine's order of bytes:
///
///     0   4   total length of the reply, unsigned
///     4   4   document identifier, unsigned; 0 for an object that is no known document
///     8   4   where the path begins, counted from here, signed
///     12  4   length of the path in bytes, unsigned
///     …       the path as the file system has it, absolute, without a NUL
inline constexpr std::size_t kMaximumReplyPath = 1024;
inline constexpr std::size_t kMaximumReply = 16 + kMaximumReplyPath;
using AttributeReply = std::array<std::byte, kMaximumReply>;

/// An open object of the file system; closed when destroyed.
class OpenObject {
public:
    virtual ~OpenObject() = default;

    /// @param attributes of CommonAttributes; only both together can be asked
    /// @param options of AttributeQueryOptions; the two together are the only ones
    /// @returns false with errno set when the query fails, ENAMETOOLONG when the reply would not fit
    [[nodiscard]] virtual bool queryAttributes(std::uint32_t attributes, std::uint32_t options,
                                               std::span<std::byte> reply) const = 0;
};

/// Finds documents by the identifier that each was given once, in 32 bits, and that it keeps when it is renamed, moved
/// or saved by replacing its file. Synchronous, safe from any thread; failures leave their number in errno.
class GenerationalStorage {
public:
    virtual ~GenerationalStorage() = default;

    /// The device that holds a file or folder, as the file system's status has it; none with errno set.
    [[nodiscard]] virtual std::optional<std::uint32_t> deviceOf(const URL&) const = 0;

    /// The file identifier of the object at the document's place: as a rule the document, but what lies there may have
    /// replaced it, which its attributes tell.
    /// @returns 0 with errno set: ENOENT for an identifier that no document has or whose document is gone, ENODEV when
    ///          the device is not the drive's
    [[nodiscard]] virtual std::uint64_t resolveDocumentIdentifier(std::uint64_t identifier, std::uint32_t device) = 0;

    /// Opens for reading what a file identifier stands for.
    /// @returns null with errno set
    [[nodiscard]] virtual std::unique_ptr<OpenObject> openByIdentifier(const FileSystemIdentifier&,
                                                                       const ObjectIdentifier&,
                                                                       std::uint32_t flags) = 0;
};

} // namespace tessel
