#include "app/common/TSDAdditions.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/ResourceValues.h"

#include <algorithm>

namespace tessel {

namespace {

std::vector<std::shared_ptr<const CloudContainer>> allContainers(const CloudService& cloud)
{
    auto containers = cloud.libraries();
    if (auto drive = cloud.defaultContainer())
        containers.insert(containers.begin(), std::move(drive));
    return containers;
}

} // namespace

std::optional<URL> tsd_URLByResolvingBookmark(const URL& url)
{
    const auto& cloud = platform::installed().cloud;
    if (!cloud.isExternalDocumentReference(url))
        return url;
    const auto target = cloud.resolveExternalDocumentReference(url);
    return target ? std::optional(tsd_URLByResolvingPromise(*target)) : std::nullopt;
}

URL tsd_URLByResolvingPromise(const URL& url)
{
    return platform::installed().resources.logicalURLOfPromise(url).value_or(url);
}

URL tsd_URLByResolvingAlias(const URL& url)
{
    const auto target = platform::installed().cloud.resolveExternalDocumentReference(url);
    return target ? tsd_URLByResolvingPromise(*target) : url;
}

bool tsd_isDesktopOrDocumentsFolder(const URL& url)
{
    // Of thousands of items most need no look at the file system.
    if (url.lastPathComponent() != "Documents" && url.lastPathComponent() != "Desktop")
        return false;
    const auto& cloud = platform::installed().cloud;
    const auto container = cloud.containerForURL(url);
    const auto drive = cloud.defaultContainer();
    if (!container || !drive || container->identifier != drive->identifier)
        return false;
    const auto path = cloud.pathInSyncedRoot(url);
    return path == "orvane~Quillbox/Documents" || path == "orvane~Quillbox/Desktop";
}

bool tsd_canCrossZoneMoveURLs(const std::vector<URL>& urls)
{
    if (urls.empty())
        return false;
    const auto& cloud = platform::installed().cloud;
    const auto source = cloud.containerForURL(urls.front());
    if (!source)
        return false;
    const auto containers = allContainers(cloud);
    return std::any_of(containers.begin(), containers.end(), [&](const auto& container) {
        return container->identifier != source->identifier && cloud.canMoveWithoutDownloading(*source, *container);
    });
}

} // namespace tessel
