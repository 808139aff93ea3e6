#include "platform/documents/DocumentListController.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileManager.h"
#include "platform/files/TypeRegistry.h"

#include <algorithm>

namespace tessel {

namespace {

bool isDirectory(const URL& url)
{
    const auto attributes = platform::installed().files.attributes(url.path());
    return attributes && attributes->kind == FileKind::Directory;
}

/// The names on the way from a folder to an item in it; none when it is not in it.
std::optional<std::vector<std::string>> namesBetween(const URL& folder, const URL& item)
{
    if (!folder.contains(item))
        return std::nullopt;
    auto names = item.pathComponents();
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(folder.pathComponents().size()));
    return names;
}

} // namespace

std::optional<DocumentListController::Hierarchy> DocumentListController::listControllerHierarchyForURL(
    const URL& folder)
{
    const auto& services = platform::installed();
    const URL target = services.files.resolvingSymbolicLinks(folder);
    const auto top = services.cloud.defaultContainer();
    const auto container = services.cloud.containerForURL(target);
    if (!top || !container || !isDirectory(target))
        return std::nullopt;
    const auto names = namesBetween(services.files.resolvingSymbolicLinks(container->documentsURL), target);
    const auto isPackage = [&](const std::string& name) { return services.types.isPackageName(name); };
    if (!names || std::any_of(names->begin(), names->end(), isPackage))
        return std::nullopt;

    Hierarchy lists{create(top->documentsURL)};
    URL next = container->documentsURL;
    if (next != top->documentsURL)
        lists.push_back(create(next));
    for (const auto& name : *names)
        lists.push_back(create(next = next.appending(name)));
    return lists;
}

} // namespace tessel
