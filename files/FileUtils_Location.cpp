#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/text/GeneralError.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Device.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr const char* kRightToLeftMark = "\u200F";

/// The name as a text of its own: whatever its writing direction is, it leaves what stands beside it in place.
std::string isolated(std::string_view name)
{
    return "\u2068" + platform::installed().text.displayName(name) + "\u2069";
}

/// The name to show, or the file name; empty when there is neither.
std::string nameOf(const URL& url)
{
    TSD_FUNCTION("+[FileUtils containerAndRelativePathforURL:container:relativePathComponents:]");
    constexpr ResourceKey kName[] = {ResourceKey::LocalizedName};
    const auto values = platform::installed().resources.values(kName, url, ValueVariant::Promised);
    const auto found = values ? values->find(ResourceKey::LocalizedName) : ResourceValues::Values::const_iterator();
    const auto* name = values && found != values->end() ? found->second.get<std::string>() : nullptr;
    if (name && !name->empty())
        return *name;
    TSD_DEBUG("Can't get localizedName for URL %@: err %@", url, values ? std::nullopt : std::optional(values.error()));
    return std::string(url.lastPathComponent());
}

/// How many folders deep in the container's documents folder a URL lies; none for what does not.
std::optional<std::size_t> depthBelowDocuments(const URL& url, const CloudContainer& container)
{
    const auto& cloud = platform::installed().cloud;
    const auto top = cloud.pathInSyncedRoot(container.documentsURL);
    const auto path = cloud.pathInSyncedRoot(url);
    if (!top || !path)
        return std::nullopt;
    const auto topLength = URL::file(*top).pathComponents().size();
    const auto length = URL::file(*path).pathComponents().size();
    return length < topLength ? std::nullopt : std::optional(length - topLength);
}

} // namespace

std::string FileUtils::pathBarArrowCharacter(bool rightToLeft)
{
    return rightToLeft ? " \u25C2 " : " \u25B8 ";
}

std::optional<std::string> FileUtils::displayableLocationForURL(const URL& url)
{
    std::shared_ptr<const CloudContainer> container;
    std::vector<std::string> names;
    const auto drive = platform::installed().cloud.defaultContainer();
    if (containerAndRelativePathforURL(url, &container, &names) || !container || !drive)
        return std::nullopt;
    const bool rightToLeft = platform::installed().device.layoutDirection == LayoutDirection::RightToLeft;
    const auto separator = pathBarArrowCharacter(rightToLeft);
    auto text = (rightToLeft ? kRightToLeftMark : "") + isolated(drive->localizedName);
    if (container->identifier != drive->identifier)
        text += separator + isolated(container->localizedName);
    for (std::size_t i = 0; i + 1 < names.size(); ++i)
        text += separator + isolated(names[i]);
    return text;
}

std::optional<Error> FileUtils::containerAndRelativePathforURL(const URL& url,
                                                               std::shared_ptr<const CloudContainer>* container,
                                                               std::vector<std::string>* relativePathComponents)
{
    TSD_FUNCTION("+[FileUtils containerAndRelativePathforURL:container:relativePathComponents:]");
    const auto found = platform::installed().cloud.containerForURL(url);
    if (!found) {
        TSD_WARNING("Split URL: %@", std::optional<Error>());
        return std::nullopt;
    }
    if (container)
        *container = found;
    if (!relativePathComponents)
        return std::nullopt;
    const auto depth = depthBelowDocuments(url, *found);
    if (!depth)
        return generalError(ErrorCode::kFormatting);
    std::vector<std::string> names;
    for (auto current = url; names.size() < *depth; current = current.deletingLastPathComponent())
        names.push_back(nameOf(current));
    if (!names.empty())
        relativePathComponents->assign(names.rbegin(), names.rend());
    return std::nullopt;
}

} // namespace tessel
