#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace tessel {

namespace {

bool exists(const URL& url)
{
    return uninterrupted([&] { return ::faccessat(AT_FDCWD, url.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW); }) == 0;
}

bool isFolder(const URL& url)
{
    struct stat status = {};
    return ::stat(url.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool unlinkItem(const URL& url)
{
    return uninterrupted([&] { return ::unlink(url.path().c_str()); }) == 0;
}

// A document whose download was interrupted at its very end has its placeholder still. Without the document that would
// count again.
bool dropShadowedPlaceholder(const URL& url)
{
    return unlinkItem(placeholderURL(url)) || errno == ENOENT;
}

// Folders made for one that is wanted in them; removed again unless all succeeded.
class NewFolders {
public:
    // errno tells why not.
    bool make(const URL& url, WithIntermediates intermediates)
    {
        if (exists(placeholderURL(url))) {
            errno = EEXIST;
            return false;
        }
        if (makeOne(url))
            return true;
        if (intermediates == WithIntermediates::No)
            return false;
        if (errno == EEXIST)
            return isFolder(url) || (errno = EEXIST, false);
        return errno == ENOENT && url != url.deletingLastPathComponent() &&
               make(url.deletingLastPathComponent(), intermediates) && makeOne(url);
    }

    void undo()
    {
        for (auto url = made_.rbegin(); url != made_.rend(); ++url)
            uninterrupted([&] { return ::rmdir(url->path().c_str()); });
    }

private:
    bool makeOne(const URL& url)
    {
        const bool isMade = uninterrupted([&] { return ::mkdir(url.path().c_str(), 0777); }) == 0;
        if (isMade)
            made_.push_back(url);
        return isMade;
    }

    std::vector<URL> made_;
};

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
    NewFolders folders;
    if (folders.make(url, intermediates))
        return std::nullopt;
    auto error = errnoError(errno, url);
    folders.undo();
    return error;
}

std::optional<Error> PosixFileManager::removeItem(const URL& url)
{
    if (!exists(url))
        return unlinkItem(placeholderURL(url)) ? std::nullopt : std::optional(errnoError(errno, url));
    if (!dropShadowedPlaceholder(url))
        return errnoError(errno, url);
    if (unlinkItem(url) || (errno == EISDIR && ::rmdir(url.path().c_str()) == 0))
        return std::nullopt;
    return errnoError(errno, url);
}

std::optional<Error> PosixFileManager::moveItem(const URL& from, const URL& to)
{
    if (exists(placeholderURL(to)))
        errno = EEXIST;
    else if (dropShadowedPlaceholder(from) &&
             ::renameat2(AT_FDCWD, from.path().c_str(), AT_FDCWD, to.path().c_str(), RENAME_NOREPLACE) == 0)
        return std::nullopt;
    auto error = errnoError(errno, from);
    if (error.code == ErrorCode::kFileExists)
        error.userInformation[ErrorKey::kDestinationFilePath] = to.path();
    return error;
}

} // namespace tessel
