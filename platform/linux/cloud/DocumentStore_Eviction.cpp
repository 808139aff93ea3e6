#include "platform/files/ResourceValues.h"
#include "platform/files/TypeRegistry.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/cloud/DocumentStore.h"
#include "platform/linux/cloud/PlaceholderChanges.h"
#include "platform/linux/files/CompareItems.h"
#include "platform/linux/files/CopyContent.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/FileStatus.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WithdrawnItem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <random>
#include <string>

namespace tessel {

namespace {

FileDescriptor opened(const URL& url, int flags)
{
    return FileDescriptor(
        uninterrupted([&] { return ::open(url.path().c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600); }));
}

// Tells whether any program opens a file while this lives. Where a file system cannot say, nobody seems to.
class OpeningWatch {
public:
    explicit OpeningWatch(int file) : file_(file)
    {
        ::fcntl(file, F_SETSIG, SIGURG); // which nobody need handle
        isHeld_ = ::fcntl(file, F_SETLEASE, F_WRLCK) == 0;
        isOpenElsewhere_ = !isHeld_ && errno == EAGAIN;
    }
    ~OpeningWatch()
    {
        if (isHeld_)
            ::fcntl(file_, F_SETLEASE, F_UNLCK);
    }
    OpeningWatch(const OpeningWatch&) = delete;
    OpeningWatch& operator=(const OpeningWatch&) = delete;

    [[nodiscard]] bool isOpenElsewhere() const
    {
        return isOpenElsewhere_ || (isHeld_ && ::fcntl(file_, F_GETLEASE) != F_WRLCK);
    }

private:
    const int file_;
    bool isHeld_ = false;
    bool isOpenElsewhere_ = false;
};

std::string newIdentifier()
{
    std::random_device random;
    std::array<char, 33> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x%08x%08x%08x", random(), random(), random(), random());
    return digits.data();
}

std::optional<std::string> attribute(const URL& url, const char* name)
{
    const auto value = extendedAttribute(url, name);
    return value ? *value : std::nullopt;
}

bool syncFolder(const URL& folder)
{
    const auto descriptor = opened(folder, O_RDONLY | O_DIRECTORY);
    return descriptor.isOpen() && uninterrupted([&] { return ::fsync(descriptor.get()); }) == 0;
}

} // namespace

std::optional<Error> DocumentStore::evict(const URL& document) const
{
    unfinished_.clearUpAfterOthers();
    const auto isGoneAlready = isInCloudOnly(document);
    if (!isGoneAlready)
        return isGoneAlready.error();
    if (*isGoneAlready)
        return std::nullopt;
    const auto stamp = stampOf(document);
    if (!stamp)
        return errnoError(errno, document);
    if (!S_ISREG(stamp->mode))
        return error(ErrorCode::kUnsupported, "“%1$@” cannot be kept in the cloud only.", document);
    const auto file = opened(document, O_RDONLY);
    if (!file.isOpen())
        return errnoError(errno, document);
    const OpeningWatch watch(file.get());
    const auto identifier = storedIdentifierOf(file.get(), document);
    if (!identifier)
        return identifier.error();
    if (watch.isOpenElsewhere() || stampOf(file.get()) != stamp)
        return errnoError(EBUSY, document);
    const auto isUntouched = [&] { return !watch.isOpenElsewhere(); };
    return replaceByPlaceholder(document, file.get(), *stamp, *identifier, isUntouched);
}

// What the store calls the content of a document, which is stored now unless it is already.
Result<std::string> DocumentStore::storedIdentifierOf(int document, const URL& url) const
{
    if (auto known = attribute(url, kContentAttribute); known && hasContent(*known, document))
        return *std::move(known);
    auto identifier = newIdentifier();
    if (auto error = store(identifier, document, url))
        return *std::move(error);
    return identifier;
}

bool DocumentStore::hasContent(const std::string& identifier, int document) const
{
    if (!isContentIdentifier(identifier))
        return false;
    const auto stored = opened(folder_.appending(identifier), O_RDONLY);
    return stored.isOpen() && areEqualFiles(stored.get(), document);
}

std::optional<Error> DocumentStore::store(const std::string& identifier, int document, const URL& url) const
{
    if (::mkdir(folder_.path().c_str(), 0700) != 0 && errno != EEXIST)
        return errnoError(errno, url);
    auto file = NewFile::create(folder_.appending(identifier), url, unfinished_);
    if (!file)
        return file.error();
    if (::lseek(document, 0, SEEK_SET) != 0 || !copyContent(document, file->descriptor()) ||
        uninterrupted([&] { return ::fsync(file->descriptor()); }) != 0)
        return errnoError(errno, url);
    if (!areEqualFiles(document, file->descriptor()))
        return errnoError(EIO, url);
    return file.value().publish() && syncFolder(folder_) ? std::nullopt : std::optional(errnoError(errno, url));
}

// The document counts as long as it is there. It is looked at once more when it is out of everybody's reach.
std::optional<Error> DocumentStore::replaceByPlaceholder(const URL& document, int file, const ItemStamp& stamp,
                                                         std::string identifier,
                                                         const std::function<bool()>& isUntouched) const
{
    const auto placeholder = placeholderURL(document);
    const std::string name(document.lastPathComponent());
    const auto attributes = fileAttributesAt(AT_FDCWD, document.path().c_str());
    if (!attributes)
        return errnoError(errno, document);
    // One that is there is in the shadow of the document, of a download that was interrupted at its very end.
    uninterrupted([&] { return ::unlink(placeholder.path().c_str()); });
    const PlaceholderRecord record = {name,
                                      stamp.size,
                                      attributes->creationDate,
                                      Date{stamp.modified},
                                      types_.identifierForFileName(name),
                                      std::move(identifier),
                                      attribute(document, kSharedAttribute)};
    auto failure = makePlaceholder(document, record, file, unfinished_);
    if (failure)
        return failure;
    if (syncFolder(document.deletingLastPathComponent()))
        failure = removeIfUnchanged(document, stamp, isUntouched);
    else
        failure = errnoError(errno, document);
    if (failure)
        uninterrupted([&] { return ::unlink(placeholder.path().c_str()); });
    return failure;
}

std::optional<Error> DocumentStore::removeIfUnchanged(const URL& document, const ItemStamp& stamp,
                                                      const std::function<bool()>& isUntouched) const
{
    UnfinishedChange should;
    should.stamp = stamp;
    auto withdrawn = WithdrawnItem::withdraw(document, document, unfinished_, std::move(should));
    if (!withdrawn)
        return withdrawn.error();
    if (stampOf(withdrawn->location()) != stamp || !isUntouched())
        return errnoError(EBUSY, document);
    continueMark(withdrawn->location(), placeholderURL(document));
    return withdrawn.value().remove();
}

} // namespace tessel
