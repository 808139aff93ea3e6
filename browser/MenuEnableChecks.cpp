#include "browser/MenuEnableChecks.h"

#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/DRItem.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/DocumentListController.h"
#include "platform/files/FileManager.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

namespace tessel {

namespace {

constexpr const char* kNoFolders = "None";
constexpr const char* kAnyDepth = "Any";
constexpr const char* kOneLevel = "One";

/// A folder's place in its container.
struct Place {
    std::shared_ptr<const CloudContainer> container; ///< null: in none
    std::vector<std::string> relativePath;
    std::optional<Error> error;
};

Place placeOf(const URL& folder)
{
    Place place;
    place.error = FileUtils::containerAndRelativePathforURL(folder, &place.container, &place.relativePath);
    if (place.error)
        place.container = nullptr;
    return place;
}

bool holdsSpecialFolder(const DocumentListController& list)
{
    const auto& folder = list.presentedURL();
    return std::ranges::any_of(
        std::vector{folder.appending("Desktop"), folder.appending("Documents")},
        [&](const URL& url) { return list.isSelected(url) && tsd_isDesktopOrDocumentsFolder(url); });
}

bool isFolder(const URL& url)
{
    const auto is = [&](ResourceKey key) {
        const auto value = FileUtils::getResourceValue(key, url);
        const auto* answer = value.get<bool>();
        return answer && *answer;
    };
    return is(ResourceKey::IsDirectory) && !is(ResourceKey::IsPackage);
}

} // namespace

bool MenuEnableChecks::canShowMoveForSelectedItems(const DocumentListController& list)
{
    const auto selected = list.selectedItems();
    if (selected.count == 0 || holdsSpecialFolder(list) || selected.libraries > 0)
        return false;
    return containerSupportsAnyDepth(list) || selected.folders == 0;
}

bool MenuEnableChecks::canShowDeleteForSelectedItems(const DocumentListController& list)
{
    const auto selected = list.selectedItems();
    if (selected.count == 0 || holdsSpecialFolder(list))
        return false;
    return selected.libraries == 0 || selected.libraries == selected.count;
}

bool MenuEnableChecks::canEnableNewFolderForSelectedItems(const DocumentListController& list)
{
    TSD_FUNCTION("+[MenuEnableChecks canEnableNewFolderForSelectedItems:]");
    const auto [container, relativePath, error] = placeOf(list.presentedURL());
    if (!container) {
        TSD_ERROR("Couldn't get container for URL %@: %@", list.presentedURL(), error);
        return false;
    }
    const auto& depth = container->depthOption;
    if (!depth) {
        TSD_DEBUG("Container %@ has no depth. Enabling new folder button", container->identifier);
        return true;
    }
    if (depth == kNoFolders) {
        TSD_DEBUG("Container %@ supports no folders. Disabling new folder button", container->identifier);
        return false;
    }
    if (depth == kAnyDepth) {
        TSD_DEBUG("Container %@ supports any folder. Enabling new folder button", container->identifier);
        return true;
    }
    if (depth != kOneLevel) {
        TSD_WARNING("Container %@ has unknown depth option %@. Disabling new folder button", container->identifier,
                    *depth);
        return false;
    }
    if (relativePath.empty()) {
        TSD_DEBUG("Container %@ supports one folder. File is depth 0. Enabling new folder button",
                  container->identifier);
        return true;
    }
    TSD_DEBUG("Container %@ supports one folder. File is depth %u. Disabling new folder button", container->identifier,
              relativePath.size());
    return false;
}

bool MenuEnableChecks::containerSupportsAnyDepth(const DocumentListController& list)
{
    TSD_FUNCTION("+[MenuEnableChecks containerSupportsAnyDepth:]");
    const auto [container, relativePath, error] = placeOf(list.presentedURL());
    if (!container) {
        TSD_ERROR("Couldn't get container for URL %@: %@", list.presentedURL(), error);
        return false;
    }
    if (!container->depthOption) {
        TSD_DEBUG("Container %@ has no depth. Enabling new folder button", container->identifier);
        return true;
    }
    if (container->depthOption == kAnyDepth) {
        TSD_DEBUG("Container %@ supports any folder. Enabling new folder button", container->identifier);
        return true;
    }
    return false;
}

bool MenuEnableChecks::containerHasSubfolders(const URL& folder)
{
    TSD_FUNCTION("+[MenuEnableChecks containerHasSubfolders:]");
    const auto container = placeOf(folder).container;
    if (!container)
        return true;
    bool found = false;
    const auto error = platform::installed().files.enumerateShallow(
        container->documentsURL, [&](const URL& entry, const FileAttributes& attributes) {
            found = attributes.kind == FileKind::Directory && isFolder(entry);
            return !found;
        });
    if (error)
        TSD_INFO("Error enumerating %@: %@", container->documentsURL, error);
    return found;
}

std::uint64_t MenuEnableChecks::numContainersInURLArray(const std::vector<URL>& urls)
{
    const auto& cloud = platform::installed().cloud;
    return static_cast<std::uint64_t>(
        std::ranges::count_if(urls, [&](const URL& url) { return cloud.isContainerTopFolder(url); }));
}

std::uint64_t MenuEnableChecks::numFoldersInURLArray(const std::vector<URL>& urls)
{
    const bool hasFolder = std::ranges::any_of(urls, [](const URL& url) {
        const auto item = DRItem::initWithURL(url);
        return item && item->isDirectory() && !item->isPackage();
    });
    return hasFolder ? 1 : 0;
}

bool MenuEnableChecks::isDesktopOrDocumentsInURLArray(const std::vector<URL>& urls)
{
    return std::ranges::any_of(urls, tsd_isDesktopOrDocumentsFolder);
}

} // namespace tessel
