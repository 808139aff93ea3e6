#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/PlaceholderChanges.h"
#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/MoveBetweenFileSystems.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/RenameCase.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WithdrawnItem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tessel {

namespace {

enum class Presence { Absent, Present, Unknown };

// Unknown with errno set.
Presence presenceOf(const URL& url)
{
    const auto* path = url.path().c_str();
    if (uninterrupted([&] { return ::faccessat(AT_FDCWD, path, F_OK, AT_SYMLINK_NOFOLLOW); }) == 0)
        return Presence::Present;
    return errno == ENOENT || errno == ENOTDIR ? Presence::Absent : Presence::Unknown;
}

// Whether nothing is there; else errno says EEXIST, or why it is not known.
bool isFree(const URL& url)
{
    const auto presence = presenceOf(url);
    if (presence == Presence::Present)
        errno = EEXIST;
    return presence == Presence::Absent;
}

bool isFolder(const URL& url)
{
    struct stat status = {};
    return uninterrupted([&] { return ::stat(url.path().c_str(), &status); }) == 0 && S_ISDIR(status.st_mode);
}

bool unlinkItem(const URL& url)
{
    return uninterrupted([&] { return ::unlink(url.path().c_str()); }) == 0;
}

bool unlinkFolder(const URL& url)
{
    return uninterrupted([&] { return ::rmdir(url.path().c_str()); }) == 0;
}

// A document whose download was interrupted at its very end has its placeholder still. Once the document is gone, that
// would count again.
bool dropShadowedPlaceholder(const URL& url)
{
    return unlinkItem(placeholderURL(url)) || errno == ENOENT;
}

Error otherDateError(const URL& url)
{
    auto error = errnoError(ECANCELED, url);
    error.domain = Domain::General;
    error.code = ErrorCode::kUserCancelled;
    return error;
}

bool makeFolder(const URL& url)
{
    return uninterrupted([&] { return ::mkdir(url.path().c_str(), 0777); }) == 0;
}

// Errno says EEXIST when it is something else.
bool isFolderThere(const URL& url)
{
    const bool isFound = isFolder(url);
    errno = EEXIST;
    return isFound;
}

} // namespace

std::optional<FileKind> PosixFileManager::kindOfItem(const std::string& path) const
{
    struct stat status = {};
    if (uninterrupted([&] { return ::stat(path.c_str(), &status); }) != 0)
        return std::nullopt;
    if (S_ISDIR(status.st_mode))
        return FileKind::Directory;
    return S_ISREG(status.st_mode) ? FileKind::RegularFile : FileKind::Other;
}

std::optional<Error> PosixFileManager::createDirectory(const URL& url, WithIntermediates intermediates)
{
    if (isFree(placeholderURL(url)) && makeFolder(url))
        return std::nullopt;
    if (intermediates == WithIntermediates::Yes && errno == EEXIST && isFolderThere(url))
        return std::nullopt;
    if (intermediates == WithIntermediates::Yes && errno == ENOENT)
        return createWithParents(url);
    return errnoError(errno, url);
}

// All of them out of sight first, so that they come to be in one step.
std::optional<Error> PosixFileManager::createWithParents(const URL& url)
{
    auto first = url;
    for (auto parent = url.deletingLastPathComponent(); isFree(parent); parent = parent.deletingLastPathComponent())
        first = parent;
    if (errno != EEXIST || !isFree(placeholderURL(first)))
        return errnoError(errno, url);
    const auto hidden = hiddenNameBeside(first);
    auto note = unfinished_.remember({hidden, {}, {}, {}, {}});
    bool isMade = makeFolder(hidden);
    for (auto slash = first.path().size(); isMade && slash < url.path().size();) {
        slash = std::min(url.path().find('/', slash + 1), url.path().size());
        isMade = makeFolder(hidden.appending(url.path().substr(first.path().size(), slash - first.path().size())));
    }
    if (isMade && renameWithoutReplacing(hidden, first))
        return std::nullopt;
    auto error = errnoError(errno, url);
    if (removeTree(hidden, Protection::Override, url))
        note.abandon();
    return error;
}

std::optional<Error> PosixFileManager::removeItem(const URL& url, const std::optional<Date>& modified)
{
    unfinished_.clearUpAfterOthers();
    if (modified)
        if (const auto stamp = stampOf(url); stamp && S_ISREG(stamp->mode))
            return removeFileOfDate(url, *stamp, *modified);
    const auto presence = presenceOf(url);
    const bool isRemoved = presence == Presence::Absent    ? unlinkItem(placeholderURL(url))
                           : presence == Presence::Present ? dropShadowedPlaceholder(url) && unlinkItem(url)
                                                           : false;
    if (isRemoved)
        return std::nullopt;
    return errno == EISDIR ? removeFolder(url) : errnoError(errno, url);
}

// What it is can be told for sure only when it is out of everybody's reach.
std::optional<Error> PosixFileManager::removeFileOfDate(const URL& url, const ItemStamp& stamp, const Date& modified)
{
    if (stamp.modified != modified.nanoseconds)
        return otherDateError(url);
    if (!dropShadowedPlaceholder(url))
        return errnoError(errno, url);
    UnfinishedChange should;
    should.stamp = stamp;
    auto file = WithdrawnItem::withdraw(url, url, unfinished_, std::move(should));
    if (!file)
        return file.error();
    return stampOf(file->location()) == stamp ? file.value().remove() : otherDateError(url);
}

// Out of sight in one step, so that nobody sees it half-removed, and so that a program that is killed has removed it.
std::optional<Error> PosixFileManager::removeFolder(const URL& url)
{
    if (unlinkFolder(url))
        return std::nullopt;
    if (errno != ENOTEMPTY && errno != EEXIST)
        return errnoError(errno, url);
    if (auto error = checkFolderCanBeRemoved(url, url))
        return error;
    auto folder = WithdrawnItem::withdraw(url, url, unfinished_);
    return folder ? folder.value().remove() : folder.error();
}

std::optional<Error> PosixFileManager::moveItem(const URL& from, const URL& to)
{
    unfinished_.clearUpAfterOthers();
    auto error = isFree(placeholderURL(to)) ? moveToFreeName(from, to) : std::optional(errnoError(errno, from));
    if (error == Error{Domain::General, ErrorCode::kFileExists, {}, {}})
        error->userInformation[ErrorKey::kDestinationFilePath] = to.path();
    return error;
}

std::optional<Error> PosixFileManager::moveToFreeName(const URL& from, const URL& to)
{
    const auto presence = presenceOf(from);
    if (presence == Presence::Absent)
        return movePlaceholder(from, to);
    if (presence == Presence::Unknown || !dropShadowedPlaceholder(from))
        return errnoError(errno, from);
    if (beforeMove)
        beforeMove(from);
    return moveEntry(from, to, from);
}

// The record is made to fit both names first, so that at no moment it fits none.
std::optional<Error> PosixFileManager::movePlaceholder(const URL& from, const URL& to)
{
    if (!isFree(to))
        return errnoError(errno, from);
    if (from.lastPathComponent() != to.lastPathComponent())
        if (auto error = addNameToPlaceholder(from, to.lastPathComponent(), unfinished_))
            return error;
    return moveEntry(placeholderURL(from), placeholderURL(to), from);
}

std::optional<Error> PosixFileManager::moveEntry(const URL& from, const URL& to, const URL& named)
{
    if (renameWithoutReplacing(from, to) || (errno == EEXIST && renameCase(from, to, unfinished_)))
        return std::nullopt;
    return errno == EXDEV ? moveBetweenFileSystems(from, to, named, unfinished_) : errnoError(errno, named);
}

} // namespace tessel
