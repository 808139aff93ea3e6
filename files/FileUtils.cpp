#include "files/FileUtils.h"

#include "app/common/Log.h"
#include "platform/files/FileManager.h"
#include "platform/run/Clock.h"

namespace tessel {

namespace {

Value singleValue(ResourceKey key, const URL& url, ValueVariant variant)
{
    const ResourceKey keys[] = {key};
    const auto values = platform::installed().resources.values(keys, url, variant);
    if (!values)
        return {};
    const auto found = values->find(key);
    return found == values->end() ? Value() : found->second;
}

double secondsAgo(const std::optional<Date>& date)
{
    return date ? platform::installed().clock.now().secondsSince(*date) : 0;
}

} // namespace

bool FileUtils::exists(const URL& url)
{
    return platform::installed().files.kindOfItem(url.path()).has_value();
}

bool FileUtils::isFile(const URL& url)
{
    const auto kind = platform::installed().files.kindOfItem(url.path());
    return kind && kind != FileKind::Directory;
}

bool FileUtils::isDir(const URL& url)
{
    return platform::installed().files.kindOfItem(url.path()) == FileKind::Directory;
}

Value FileUtils::getResourceValue(ResourceKey key, const std::optional<URL>& forURL)
{
    if (!forURL)
        return {};
    auto value = singleValue(key, *forURL, ValueVariant::Promised);
    return value.isNone() ? singleValue(key, *forURL, ValueVariant::Plain) : value;
}

void FileUtils::logFileAttributes(const std::string& path)
{
    TSD_FUNCTION("+[FileUtils logFileAttributes:]");
    const auto attributes = platform::installed().files.attributes(path);
    if (!attributes) {
        TSD_ERROR("Cannot get attributes of %@: %@", path, attributes.error().description);
        return;
    }
    const auto& created = attributes->creationDate;
    const auto& modified = attributes->modificationDate;
    TSD_DEBUG("Date Created: %@ (%lf seconds ago)", created, secondsAgo(created));
    TSD_DEBUG("Date Modified: %@ (%lf seconds ago)", modified, secondsAgo(modified));
    TSD_DEBUG("Size: %@ bytes", attributes->size);
}

} // namespace tessel
