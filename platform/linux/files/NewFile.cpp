#include "platform/linux/files/NewFile.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
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
        return NewFile(place, std::nullopt, {}, std::move(file));
    if (!isRefusalOfUnnamedFiles(errno))
        return errnoError(errno, named);
    auto hidden = hiddenNameBeside(place);
    auto note = unfinished.remember({hidden, {}, {}, {}, {}});
    auto file = opened(hidden, O_CREAT | O_EXCL);
    if (!file.isOpen())
        return errnoError(errno, named);
    return NewFile(place, std::move(hidden), std::move(note), std::move(file));
}

NewFile::~NewFile()
{
    if (hidden_)
        uninterrupted([&] { return ::unlink(hidden_->path().c_str()); });
}

bool NewFile::publish()
{
    if (hidden_) {
        const bool isPublished = renameWithoutReplacing(*hidden_, place_);
        if (isPublished)
            hidden_.reset();
        return isPublished;
    }
    const auto self = "/proc/self/fd/" + std::to_string(file_.get());
    return uninterrupted([&] {
               return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, place_.path().c_str(), AT_SYMLINK_FOLLOW);
           }) == 0;
}

} // namespace tessel
