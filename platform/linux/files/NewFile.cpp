#include "platform/linux/files/NewFile.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace tessel {

namespace {

// Of a file system that has no files without a name.
bool isRefusalOfUnnamedFiles(int errorNumber)
{
    return errorNumber == EOPNOTSUPP || errorNumber == EISDIR || errorNumber == EINVAL;
}

FileDescriptor opened(const URL& url, int flags)
{
    return FileDescriptor(uninterrupted([&] { return ::open(url.path().c_str(), O_RDWR | O_CLOEXEC | flags, 0600); }));
}

} // namespace

Result<NewFile> NewFile::create(const URL& place, const URL& named, const UnfinishedWork& unfinished)
{
    if (auto file = opened(place.deletingLastPathComponent(), O_TMPFILE); file.isOpen())
        return NewFile(place, unfinished, std::nullopt, {}, std::move(file));
    if (!isRefusalOfUnnamedFiles(errno))
        return errnoError(errno, named);
    auto hidden = hiddenNameBeside(place);
    auto note = unfinished.remember({hidden, {}, {}, {}, {}});
    auto file = opened(hidden, O_CREAT | O_EXCL);
    if (!file.isOpen())
        return errnoError(errno, named);
    return NewFile(place, unfinished, std::move(hidden), std::move(note), std::move(file));
}

NewFile::~NewFile()
{
    if (hidden_)
        uninterrupted([&] { return ::unlink(hidden_->path().c_str()); });
}

bool NewFile::publish()
{
    if (!hidden_)
        return giveName(place_);
    const bool isPublished = renameWithoutReplacing(*hidden_, place_);
    if (isPublished)
        hidden_.reset();
    return isPublished;
}

bool NewFile::replace()
{
    if (!hidden_) {
        const auto hidden = hiddenNameBeside(place_);
        note_ = unfinished_.remember({hidden, {}, {}, {}, {}});
        if (!giveName(hidden))
            return false;
        hidden_ = hidden;
    }
    const bool hasReplaced =
        uninterrupted([&] { return std::rename(hidden_->path().c_str(), place_.path().c_str()); }) == 0;
    if (hasReplaced)
        hidden_.reset();
    return hasReplaced;
}

bool NewFile::giveName(const URL& name) const
{
    const auto self = "/proc/self/fd/" + std::to_string(file_.get());
    return uninterrupted(
               [&] { return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.path().c_str(), AT_SYMLINK_FOLLOW); }) == 0;
}

} // namespace tessel
