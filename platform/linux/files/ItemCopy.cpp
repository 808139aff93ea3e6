#include "platform/linux/files/ItemCopy.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/files/CompareItems.h"
#include "platform/linux/files/CopyContent.h"
#include "platform/linux/files/LinkText.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/TreeEnumeration.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WithdrawnItem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tessel {

namespace {

FileDescriptor opened(const URL& url, int flags)
{
    constexpr int kAlways = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    return FileDescriptor(uninterrupted([&] { return ::open(url.path().c_str(), flags | kAlways, 0600); }));
}

bool copyOpenFile(const FileDescriptor& from, int to)
{
    return from.isOpen() && copyContent(from.get(), to) && continueDocument(from.get(), to) &&
           copyModeAndTimes(from.get(), to);
}

bool copyFileTo(const URL& from, const URL& to)
{
    const auto source = opened(from, O_RDONLY);
    const auto copy = source.isOpen() ? opened(to, O_RDWR | O_CREAT | O_EXCL) : FileDescriptor();
    return copy.isOpen() && copyOpenFile(source, copy.get());
}

bool copyLink(const URL& from, const URL& to)
{
    const auto text = linkText(from.path());
    struct stat status = {};
    if (!text || uninterrupted([&] { return ::lstat(from.path().c_str(), &status); }) != 0 ||
        uninterrupted([&] { return ::symlink(text->c_str(), to.path().c_str()); }) != 0)
        return false;
    const timespec times[] = {status.st_atim, status.st_mtim};
    return uninterrupted([&] { return ::utimensat(AT_FDCWD, to.path().c_str(), times, AT_SYMLINK_NOFOLLOW); }) == 0;
}

bool copyItem(const URL& from, const URL& to, unsigned mode)
{
    const auto* path = to.path().c_str();
    switch (mode & S_IFMT) {
    case S_IFREG:
        return copyFileTo(from, to);
    case S_IFDIR:
        return uninterrupted([&] { return ::mkdir(path, 0700); }) == 0;
    case S_IFLNK:
        return copyLink(from, to);
    case S_IFIFO:
        return uninterrupted([&] { return ::mkfifo(path, mode & 07777); }) == 0;
    default:
        errno = ENOTSUP;
        return false;
    }
}

// What was written is read back from the disk, not from memory, where the system can be asked to.
bool bringToDisk(int descriptor)
{
    const bool isOnDisk = uninterrupted([&] { return ::fsync(descriptor); }) == 0;
    ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    return isOnDisk;
}

} // namespace

ItemCopy::ItemCopy(const URL& from, const URL& to, const URL& named, const UnfinishedWork& unfinished)
    : from_(from), to_(to), named_(named), unfinished_(unfinished)
{
}

ItemCopy::~ItemCopy()
{
    if (hidden_ && removeTree(*hidden_, Protection::Override, named_))
        note_.abandon();
}

std::optional<Error> ItemCopy::make()
{
    const auto stamp = stampOf(from_);
    if (!stamp)
        return errnoError(errno, named_);
    copied_.push_back({{}, *stamp});
    auto error = S_ISREG(stamp->mode) ? makeFile() : makeHidden();
    if (!error)
        rememberCopies();
    return error;
}

void ItemCopy::rememberCopies()
{
    for (auto& entry : copied_)
        entry.copy = file_ ? stampOf(file_->descriptor()) : stampOf(copyAt(entry.path));
}

std::optional<Error> ItemCopy::makeFile()
{
    auto file = NewFile::create(to_, named_, unfinished_);
    if (!file)
        return file.error();
    file_.emplace(std::move(file.value()));
    const auto source = opened(from_, O_RDONLY);
    if (!copyOpenFile(source, file_->descriptor()) || !bringToDisk(file_->descriptor()))
        return errnoError(errno, named_);
    return areEqualFiles(source.get(), file_->descriptor()) ? std::nullopt : std::optional(errnoError(EIO, named_));
}

std::optional<Error> ItemCopy::makeHidden()
{
    const auto hidden = hiddenNameBeside(to_);
    note_ = unfinished_.remember({hidden, {}, {}, {}, {}});
    hidden_ = hidden;
    if (!copyEntry({}))
        return errnoError(errno, named_);
    if (!S_ISDIR(source().mode))
        return std::nullopt;
    if (!copyFolderContent() || !finishFolders())
        return errnoError(errno, named_);
    const auto folder = opened(hidden, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen() || uninterrupted([&] { return ::syncfs(folder.get()); }) != 0)
        return errnoError(errno, named_);
    return areEqualItems(from_, hidden) ? std::nullopt : std::optional(errnoError(EIO, named_));
}

URL ItemCopy::copyAt(const std::string& path) const
{
    return path.empty() ? *hidden_ : hidden_->appending(path);
}

bool ItemCopy::copyEntry(const std::string& path)
{
    return copyItem(path.empty() ? from_ : from_.appending(path), copyAt(path), copied_.back().stamp.mode);
}

bool ItemCopy::copyFolderContent()
{
    int failure = 0;
    enumerateTree(
        from_,
        [&](const URL& url, const FileAttributes&) {
            const auto stamp = failure == 0 ? stampOf(url) : std::nullopt;
            if (!stamp) {
                failure = failure == 0 ? errno : failure;
                return;
            }
            copied_.push_back({url.path().substr(from_.path().size() + 1), *stamp});
            if (!copyEntry(copied_.back().path))
                failure = errno;
        },
        [&](const URL&, const Error&) {
            failure = failure == 0 ? errno : failure;
            return OnEnumerationError::Stop;
        });
    errno = failure;
    return failure == 0;
}

// Only now, for what is made in a folder changes its date, and some may not be written later.
bool ItemCopy::finishFolders()
{
    return std::all_of(copied_.rbegin(), copied_.rend(), [&](const Copied& entry) {
        if (!S_ISDIR(entry.stamp.mode))
            return true;
        const auto source = opened(entry.path.empty() ? from_ : from_.appending(entry.path), O_RDONLY | O_DIRECTORY);
        const auto copy = opened(copyAt(entry.path), O_RDONLY | O_DIRECTORY);
        return source.isOpen() && copy.isOpen() && continueDocument(source.get(), copy.get()) &&
               copyModeAndTimes(source.get(), copy.get());
    });
}

bool ItemCopy::isCopyOf(const URL& item) const
{
    return std::ranges::all_of(copied_, [&](const Copied& entry) {
        return stampOf(entry.path.empty() ? item : item.appending(entry.path)) == entry.stamp;
    });
}

bool ItemCopy::publish()
{
    if (file_)
        return file_->publish();
    const bool isPublished = renameWithoutReplacing(*hidden_, to_);
    if (isPublished)
        hidden_.reset();
    return isPublished;
}

void ItemCopy::continueMarks(const URL& source) const
{
    for (const auto& entry : copied_)
        if (entry.path.empty())
            continueMark(source, to_);
        else if (S_ISREG(entry.stamp.mode) || S_ISDIR(entry.stamp.mode))
            continueMark(source.appending(entry.path), to_.appending(entry.path));
}

void ItemCopy::takeBack()
{
    const auto& copy = copied_.front().copy;
    UnfinishedChange should;
    if (file_)
        should.stamp = copy;
    else
        should.equalTo = from_;
    auto withdrawn = WithdrawnItem::withdraw(to_, named_, unfinished_, std::move(should));
    if (!withdrawn)
        return;
    removeUnchanged(withdrawn->location());
    if (!stampOf(withdrawn->location()))
        (void)withdrawn.value().remove();
}

void ItemCopy::removeUnchanged(const URL& copy) const
{
    for (auto entry = copied_.rbegin(); entry != copied_.rend(); ++entry) {
        const auto item = entry->path.empty() ? copy : copy.appending(entry->path);
        const auto* path = item.path().c_str();
        if (S_ISDIR(entry->stamp.mode))
            uninterrupted([&] { return ::rmdir(path); }); // unless something is left in it
        else if (entry->copy && stampOf(item) == entry->copy)
            uninterrupted([&] { return ::unlink(path); });
    }
}

} // namespace tessel
