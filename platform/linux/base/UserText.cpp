#include "platform/linux/base/UserText.h"

#include "platform/base/Platform.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::string userText(std::string_view key, const std::vector<std::string>& values)
{
    return platform::isInstalled() ? localizedFilledText(key, values) : filledText(key, values);
}

std::string userTextName(std::string_view fileName)
{
    return platform::isInstalled() ? platform::installed().text.displayName(fileName) : std::string(fileName);
}

} // namespace tessel
