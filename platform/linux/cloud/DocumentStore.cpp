#include "platform/linux/cloud/DocumentStore.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/files/CopyContent.h"
#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace tessel {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

FileDescriptor openedForReading(const URL& url)
{
    return FileDescriptor(
        uninterrupted([&] { return ::open(url.path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
}

// None with errno set when it cannot be found out.
std::optional<bool> isThere(const URL& url)
{
    if (uninterrupted([&] { return ::faccessat(AT_FDCWD, url.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW); }) == 0)
        return true;
    return errno == ENOENT || errno == ENOTDIR ? std::optional(false) : std::nullopt;
}

// A file system that keeps no attributes loses them, which is no reason to keep the user from a document.
bool setAttribute(int file, const char* name, const std::string& value)
{
    return uninterrupted([&] { return ::fsetxattr(file, name, value.data(), value.size(), 0); }) == 0 ||
           errno == ENOTSUP;
}

bool setDate(int file, const Date& date)
{
    const timespec time = {date.nanoseconds / kNanosecondsPerSecond, date.nanoseconds % kNanosecondsPerSecond};
    const timespec times[] = {time, time};
    return uninterrupted([&] { return ::futimens(file, times); }) == 0;
}

// Brings the file to disk: the store's copy helps nobody who finds an empty document in place of a placeholder.
bool finish(int file, const PlaceholderRecord& record)
{
    constexpr mode_t kUsualMode = 0644;
    return uninterrupted([&] { return ::fchmod(file, kUsualMode); }) == 0 && setDate(file, record.modificationDate) &&
           uninterrupted([&] { return ::fsync(file); }) == 0;
}

// Gives the file the attributes that the placeholder has now, tags that it was given meanwhile among them, and those of
// its record.
bool takeOverAttributes(int file, const PlaceholderRecord& record, const URL& placeholder)
{
    const auto old = openedForReading(placeholder);
    return old.isOpen() && continueDocument(old.get(), file) &&
           setAttribute(file, kContentAttribute, record.identifier) &&
           (!record.sharedRole || setAttribute(file, kSharedAttribute, *record.sharedRole));
}

} // namespace

bool isContentIdentifier(const std::string& text)
{
    return !text.empty() && text.front() != '.' && text.find('/') == std::string::npos;
}

Result<bool> DocumentStore::isInCloudOnly(const URL& document) const
{
    const auto isHere = isThere(document);
    const auto isInCloud = isHere == false ? isThere(placeholderURL(document)) : std::optional(false);
    if (!isHere || !isInCloud)
        return errnoError(errno, document);
    return *isInCloud;
}

Result<DocumentStore::Content> DocumentStore::fetch(const URL& document,
                                                    const FileCoordinator::Progress& progress) const
{
    const auto placeholder = placeholderURL(document);
    const auto record = readPlaceholder(placeholder);
    if (!record)
        return errorNaming(document, record.error());
    if (!isContentIdentifier(record->identifier))
        return error(ErrorCode::kReadCorrupt, "The content of “%1$@” is damaged.", document);
    const auto stored = openedForReading(folder_.appending(record->identifier));
    if (!stored.isOpen())
        return errno == ENOENT ? error(ErrorCode::kNoSuchFile, "The content of “%1$@” is not in the cloud.", document)
                               : errnoError(errno, document);
    auto file = NewFile::create(document, document, unfinished_);
    if (!file)
        return file.error();
    const auto wantsMore = [&](std::uint64_t done) {
        return !progress || progress(done, record->size) == OnProgress::Continue;
    };
    if (!copyContent(stored.get(), file->descriptor(), wantsMore))
        return errno == ECANCELED ? error(ErrorCode::kUserCancelled, "The download of “%1$@” was cancelled.", document)
                                  : errnoError(errno, document);
    const auto stamp = stampOf(file->descriptor());
    if (stamp && stamp->size != record->size)
        return error(ErrorCode::kReadCorrupt, "The content of “%1$@” is damaged.", document);
    if (!stamp || !finish(file->descriptor(), *record))
        return errnoError(errno, document);
    return Content{*record, std::move(file.value())};
}

std::optional<Error> DocumentStore::install(Content& content, const URL& document) const
{
    unfinished_.clearUpAfterOthers();
    const auto placeholder = placeholderURL(document);
    if (isThere(document) == true)
        return std::nullopt;
    const auto record = readPlaceholder(placeholder);
    if (!record)
        return errorNaming(document, record.error());
    if (*record != content.record)
        return std::nullopt;
    if (!takeOverAttributes(content.file.descriptor(), *record, placeholder))
        return errnoError(errno, document);
    if (!content.file.publish())
        return errno == EEXIST ? std::nullopt : std::optional(errnoError(errno, document));
    continueMark(placeholder, document);
    // One that stays is in the shadow of the document.
    uninterrupted([&] { return ::unlink(placeholder.path().c_str()); });
    return std::nullopt;
}

Error DocumentStore::error(int code, const char* key, const URL& document) const
{
    auto text = filledText(text_.localized(key), {text_.displayName(document.lastPathComponent())});
    return {Domain::General, code, text, text};
}

} // namespace tessel
