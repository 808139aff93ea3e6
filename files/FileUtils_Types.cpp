#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/TypeRegistry.h"
#include "platform/text/TextServices.h"

#include <algorithm>
#include <set>

namespace tessel {

namespace {

constexpr std::string_view kAllData = "public.data";
constexpr std::string_view kAllContent = "public.content";

bool isDefaultContainer(const CloudContainer& container)
{
    const auto drive = platform::installed().cloud.defaultContainer();
    return drive && drive->identifier == container.identifier;
}

/// Whether a document of the type may live among documents of another one.
bool isWelcome(const std::string& type, const URL& document, const std::string& among)
{
    TSD_FUNCTION("+[FileUtils isValidExtensionForContainer:]");
    if (among == kAllData || among == kAllContent) {
        TSD_INFO("Container supports all UTIs");
        return true;
    }
    if (!platform::installed().types.conforms(type, among))
        return false;
    TSD_INFO("Extension %@ conforms to UTI %@", document.pathExtension(), among);
    return true;
}

} // namespace

bool FileUtils::isValidFilename(std::string_view name)
{
    const auto& text = platform::installed().text;
    return !name.empty() && name.front() != '.' && name.find_first_of("/:") == std::string_view::npos &&
           !text.containsCharacter(name, CharacterClass::Illegal) &&
           !text.containsCharacter(name, CharacterClass::Control) &&
           !text.containsCharacter(name, CharacterClass::Newline);
}

std::optional<std::string> FileUtils::fileUTI(const URL& url)
{
    const auto extension = url.pathExtension();
    return extension.empty() ? std::nullopt : platform::installed().types.identifierForExtension(extension);
}

bool FileUtils::isAudioVideoImageFile(const URL& url)
{
    TSD_FUNCTION("+[FileUtils isAudioVideoImageFile:]");
    const auto type = fileUTI(url);
    if (!type || type->empty())
        return false;
    for (const auto* ancestor : {"public.image", "public.movie", "public.audio", "com.adobe.pdf"})
        if (platform::installed().types.conforms(*type, ancestor)) {
            TSD_DEBUG("isAudioVideoImageFile: Extension %@ is %@ which conforms to UTI %@", url.pathExtension(), *type,
                      ancestor);
            return true;
        }
    TSD_DEBUG("isAudioVideoImageFile: Extension %@ is %@ which is not.", url.pathExtension(), *type);
    return false;
}

bool FileUtils::isValidExtensionForContainer(const URL& url)
{
    const auto type = fileUTI(url);
    if (!type)
        return true;
    const auto container = platform::installed().cloud.containerForURL(url);
    if (!container)
        return false;
    if (isDefaultContainer(*container) || container->documentTypes.empty())
        return true;
    const std::set<std::string> declared(container->documentTypes.begin(), container->documentTypes.end());
    return std::any_of(declared.begin(), declared.end(),
                       [&](const std::string& among) { return isWelcome(*type, url, among); });
}

} // namespace tessel
