#include "platform/linux/base/UserText.h"

#include "platform/base/Platform.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::string userText(std::string_view key, const std::vector<std::string>& values)
{
    const auto* services = platform::installedIfAny();
    return filledText(services ? services->text.localized(key) : key, values);
}

std::string userTextName(std::string_view fileName)
{
    const auto* services = platform::installedIfAny();
    return services ? services->text.displayName(fileName) : std::string(fileName);
}

} // namespace tessel
