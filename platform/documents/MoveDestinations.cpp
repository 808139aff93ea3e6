#include "platform/documents/MoveDestinations.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileManager.h"
#include "platform/files/TypeRegistry.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr const char* kAnyDepth = "Any";
constexpr const char* kOneLevel = "One";

bool isFolder(const URL& url)
{
    const auto& services = platform::installed();
    const auto attributes = services.files.attributes(url.path());
    return attributes && attributes->kind == FileKind::Directory &&
           !services.types.isPackageName(url.lastPathComponent());
}

} // namespace

MoveDestinations::MoveDestinations(std::vector<URL> items) : items_(std::move(items))
{
    paths_.reserve(items_.size());
    for (const auto& item : items_)
        paths_.insert(item.path());
}

/// Asked only where that counts: it costs a look at each item.
bool MoveDestinations::haveFolder() const
{
    if (!haveFolder_)
        haveFolder_ = std::ranges::any_of(items_, isFolder);
    return *haveFolder_;
}

bool MoveDestinations::isMoved(const URL& folder) const
{
    for (auto place = folder; place.path().size() > 1; place = place.deletingLastPathComponent())
        if (paths_.contains(place.path()))
            return true;
    return false;
}

bool MoveDestinations::accepts(const URL& folder) const
{
    const bool isThere = !items_.empty() && items_.front().deletingLastPathComponent() == folder;
    const auto container = platform::installed().cloud.containerForURL(folder);
    return !isThere && !isMoved(folder) && container && mayGetInto(*container) &&
           (takesFolders(folder) || !haveFolder());
}

/// Items from outside the drive may get anywhere.
bool MoveDestinations::mayGetInto(const CloudContainer& container) const
{
    const auto& cloud = platform::installed().cloud;
    const auto source = items_.empty() ? nullptr : cloud.containerForURL(items_.front());
    return !source || source->identifier == container.identifier || cloud.canMoveWithoutDownloading(*source, container);
}

bool MoveDestinations::leadsOn(const URL& folder) const
{
    return takesFolders(folder.appending("folder")) || !haveFolder();
}

bool MoveDestinations::reaches(const CloudContainer& library) const
{
    return mayGetInto(library) && (takesFolders(library.documentsURL) || !haveFolder());
}

// What a container says that nobody knows means no.
bool MoveDestinations::takesFolders(const URL& folder)
{
    const auto container = platform::installed().cloud.containerForURL(folder);
    if (!container)
        return false;
    const auto& depth = container->depthOption;
    return !depth || depth == kAnyDepth || (depth == kOneLevel && folder == container->documentsURL);
}

} // namespace tessel
