#include "platform/ui/OutsideRequest.h"

#include "platform/base/PercentEncoding.h"
#include "platform/base/URLComponents.h"

namespace tessel {

std::string applicationURL(const std::string& path, const std::string& mode)
{
    // Paths are encoded twice in URLs of the application's scheme.
    return "tesseldriveapp:" + percentEncodedPath(percentEncodedPath(path)) + (mode.empty() ? "" : "?mode=" + mode);
}

std::string applicationURLOf(const std::string& url, const std::string& mode)
{
    const auto components = URLComponents::parse(url);
    return components && components->scheme == "file" ? applicationURL(components->path, mode) : url;
}

void perform(Application& application, const OutsideRequest& request)
{
    if (request.shortcut)
        application.performShortcut(*request.shortcut);
    if (request.activity)
        application.continueActivity(*request.activity);
    for (const auto& url : request.urls)
        application.openURL(applicationURLOf(url));
}

} // namespace tessel
