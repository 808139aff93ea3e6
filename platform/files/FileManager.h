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

/// Whether missing folders on the way to a new one are made too.
enum class WithIntermediates { No, Yes };

/// The file system. Synchronous, on the calling thread, safe from any thread.
///
/// What changes items takes the drive as the user sees it: a document that is not on the device is an item like any
/// other, and is moved or removed without its content. A change is made as a whole or not at all, its error names the
/// item, and it leaves no file of its own behind. The caller coordinates the access (FileCoordinator).
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

    /// What is at a path, links followed; none when nothing is. A document that is not on the device has no file.
    [[nodiscard]] virtual std::optional<FileKind> kindOfItem(const std::string& path) const = 0;

    /// Makes a folder. With intermediates one that is there already is no error, without it is (516), as is an item of
    /// another kind in either case.
    [[nodiscard]] virtual std::optional<Error> createDirectory(const URL&, WithIntermediates) = 0;

    /// Removes an item for good, a folder with all that is in it; a link, not what it leads to. Of a folder that cannot
    /// be removed to the end, what is left stays where it was.
    /// @param modified none, or the date of the file that is meant: a file of another date stays, one that a program
    ///        which does not coordinate puts there at the last moment, too
    /// @returns the user-cancelled error (3072) when the file has another date
    [[nodiscard]] virtual std::optional<Error> removeItem(const URL&, const std::optional<Date>& modified) = 0;

    /// Moves or renames an item, with its attributes, also to another file system: there the copy is verified before
    /// the source goes. Never replaces anything.
    /// @returns an error 516, with the destination's path under ErrorKey::kDestinationFilePath, when an item of that
    ///          name is there
    [[nodiscard]] virtual std::optional<Error> moveItem(const URL& from, const URL& to) = 0;

    /// Visits the entries of a folder itself, but for hidden ones, until `visit` answers false. Documents that are not
    /// on the device are hidden ones.
    /// @returns why the folder could not be read to its end, or an entry not be described
    [[nodiscard]] virtual std::optional<Error> enumerateShallow(
        const URL& folder, const std::function<bool(const URL&, const FileAttributes&)>& visit) const = 0;

    /// Visits every entry below a folder, at any depth, hidden ones included, links not followed. Folders come before
    /// what is in them.
    virtual void enumerateDeep(const URL& folder, const std::function<void(const URL&, const FileAttributes&)>& visit,
                               const std::function<OnEnumerationError(const URL&, const Error&)>& onError) const = 0;
};

} // namespace tessel
