#include "platform/linux/cloud/PlaceholderChanges.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/files/NewFile.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WriteAll.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

bool fill(const NewFile& file, std::string_view content, int attributesOf)
{
    return writeAll(file.descriptor(), content) && continueDocument(attributesOf, file.descriptor()) &&
           uninterrupted([&] { return ::fsync(file.descriptor()); }) == 0;
}

} // namespace

std::optional<Error> makePlaceholder(const URL& document, const PlaceholderRecord& record, int attributesOf,
                                     const UnfinishedWork& unfinished)
{
    auto file = NewFile::create(placeholderURL(document), document, unfinished);
    if (!file)
        return file.error();
    const bool isMade = fill(*file, placeholderContent(record), attributesOf) && file.value().publish();
    return isMade ? std::nullopt : std::optional(errnoError(errno, document));
}

std::optional<Error> addNameToPlaceholder(const URL& document, std::string_view nextName,
                                          const UnfinishedWork& unfinished)
{
    const auto placeholder = placeholderURL(document);
    const auto record = readPlaceholder(placeholder);
    if (!record)
        return errorNaming(document, record.error());
    const FileDescriptor old(
        uninterrupted([&] { return ::open(placeholder.path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); }));
    if (!old.isOpen())
        return errnoError(errno, document);
    auto file = NewFile::create(placeholder, document, unfinished);
    if (!file)
        return file.error();
    const bool isAdded = fill(*file, placeholderContent(*record, nextName), old.get()) && file.value().replace();
    if (isAdded) // what it has been marked with since
        (void)continueDocument(old.get(), file.value().descriptor());
    return isAdded ? std::nullopt : std::optional(errnoError(errno, document));
}

} // namespace tessel
