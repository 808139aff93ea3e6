#include "platform/linux/cloud/ExampleBuilder.h"

#include "platform/files/TypeRegistry.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/cloud/ExternalReference.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/LinuxResourceValues.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

namespace tessel {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kFirstDate = 1'767'603'600;  // 2026-01-05T09:00:00Z
constexpr std::int64_t kDateStep = 37 * 3600 + 540; // seconds, so that the times of day differ too

bool setModificationDate(const URL& url, const Date& date)
{
    const timespec time = {date.nanoseconds / kNanosecondsPerSecond, date.nanoseconds % kNanosecondsPerSecond};
    const timespec accessAndModification[] = {time, time};
    return ::utimensat(AT_FDCWD, url.path().c_str(), accessAndModification, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

ExampleBuilder::ExampleBuilder(const URL& root, const URL& cloudStore, const TypeRegistry& types,
                               std::string identifierPrefix)
    : root_(root), cloudStore_(cloudStore), types_(types), identifierPrefix_(std::move(identifierPrefix))
{
    folder("");
    check(::mkdir(cloudStore.path().c_str(), 0700) == 0 || errno == EEXIST, cloudStore);
}

void ExampleBuilder::folder(std::string_view path)
{
    const auto url = root_.appending(path);
    if (error_)
        return;
    check(::mkdir(url.path().c_str(), 0700) == 0, url);
    made_.push_back({url, nextDate()});
}

void ExampleBuilder::file(std::string_view path, std::string_view content)
{
    const auto url = root_.appending(path);
    write(url, content);
    made_.push_back({url, nextDate()});
}

void ExampleBuilder::link(std::string_view path, const char* target)
{
    const auto url = root_.appending(path);
    if (error_)
        return;
    check(::symlink(target, url.path().c_str()) == 0, url);
    made_.push_back({url, nextDate()});
}

void ExampleBuilder::reference(std::string_view path, std::string_view container, std::string_view target,
                               std::uint32_t identifier)
{
    const auto targetInRoot = URL::file(containerFolderName(container)).appending(target).path();
    file(path, externalReferenceContent({identifier, targetInRoot}));
    markDocument(root_.appending(target), {identifier, {}});
}

void ExampleBuilder::notDownloaded(std::string_view path, std::string_view content,
                                   std::optional<std::string> sharedRole)
{
    const auto url = root_.appending(path);
    PlaceholderRecord record;
    record.name = url.lastPathComponent();
    record.size = content.size();
    record.modificationDate = nextDate();
    record.creationDate = record.modificationDate;
    record.type = types_.identifierForFileName(record.name);
    record.identifier = identifierPrefix_ + '-' + std::to_string(++placeholderCount_);
    record.sharedRole = std::move(sharedRole);
    write(cloudStore_.appending(record.identifier), content);
    if (!error_)
        error_ = writePlaceholder(url, record);
    made_.push_back({placeholderURL(url), record.modificationDate});
}

void ExampleBuilder::setTags(std::string_view path, std::string_view names)
{
    setAttribute(path, kTagAttribute, names);
}

void ExampleBuilder::setSharedRole(std::string_view path, std::string_view role)
{
    setAttribute(path, kSharedAttribute, role);
}

void ExampleBuilder::declare(const CloudContainer& container)
{
    if (!error_)
        error_ = writeContainerDeclaration(container, root_);
}

std::optional<Error> ExampleBuilder::finish()
{
    for (const auto& item : made_)
        if (!error_)
            check(setModificationDate(item.url, item.date), item.url);
    return error_;
}

Date ExampleBuilder::nextDate()
{
    return Date{(kFirstDate + kDateStep * datesGiven_++) * kNanosecondsPerSecond};
}

void ExampleBuilder::write(const URL& url, std::string_view content)
{
    if (error_)
        return;
    std::ofstream stream(url.path(), std::ios::binary);
    stream << content;
    stream.close();
    check(!stream.fail(), url);
}

// An example without tags is better than none: not every file system has attributes.
void ExampleBuilder::setAttribute(std::string_view path, const char* name, std::string_view value)
{
    const auto logical = root_.appending(path);
    const auto placeholder = placeholderURL(logical);
    const bool isDownloaded = ::faccessat(AT_FDCWD, logical.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    (void)setExtendedAttribute(isDownloaded ? logical : placeholder, name, value);
}

void ExampleBuilder::check(bool succeeded, const URL& url)
{
    if (!succeeded && !error_)
        error_ = errnoError(errno, url);
}

} // namespace tessel
