#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "platform/files/FileManager.h"
#include "platform/files/TypeRegistry.h"

namespace tessel {

bool FileUtils::exists(const URL& url)
{
    return platform::installed().files.kindOfItem(url.path()).has_value();
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

} // namespace tessel
