#pragma once

#include "platform/base/Date.h"
#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tessel {

enum class FileKind { RegularFile, Directory, SymbolicLink, Other };

/// What the file system itself says of an item; links are not followed.
struct FileAttributes {
    std::optional<FileKind> kind;
    std::optional<std::uint64_t> size; ///< bytes
    std::optional<Date> creationDate;  ///< absent where the file system keeps none
    std::optional<Date> modificationDate;
    bool extensionHidden = false;
};

/// Whether an enumeration goes on after an item that it could not read.
enum class OnEnumerationError { Continue, Stop };

/// The file system, without the cloud's view of it. Synchronous, on the calling thread, safe from any thread.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Attributes by path; a no-such-file error (4) when nothing is there.
    virtual Result<FileAttributes> attributes(const std::string& path) const = 0;

    /// The path written in a symbolic link, as stored.
    virtual Result<std::string> destinationOfSymbolicLink(const URL&) const = 0;

    /// The URL with every link in its path resolved; of a path that leads nowhere, as much as can be.
    [[nodiscard]] virtual URL resolvingSymbolicLinks(const URL&) const = 0;

    /// The target of an alias file (a desktop entry of type Link with a file URL), without asking the user and without
    /// mounting anything.
    virtual Result<URL> resolvingAliasFile(const URL&) const = 0;

    /// Visits every entry below a folder, at any depth, hidden ones included, links not followed. Folders come before
    /// what is in them.
    virtual void enumerateDeep(const URL& folder, const std::function<void(const URL&, const FileAttributes&)>& visit,
                               const std::function<OnEnumerationError(const URL&, const Error&)>& onError) const = 0;
};

} // namespace tessel
