#include "platform/ui/OutsideRequest.h"

#include "platform/base/PercentEncoding.h"
#include "platform/base/URLComponents.h"

namespace tessel {

std::string applicationURL(const std::string& path, const std::string& mode)
{
    // It is decoded twice, which only a percent sign of the path's own would show.
    std::string encoded;
    for (const char character : path)
        encoded += character == '%' ? std::string("%25") : std::string(1, character);
    return "tesseldriveapp:" + percentEncodedPath(encoded) + (mode.empty() ? "" : "?mode=" + mode);
}

std::string applicationURLOf(const std::string& url, const std::string& mode)
{
    const auto components = URLComponents::parse(url);
    return components && components->scheme == "file" ? applicationURL(components->path, mode) : url;
}

std::vector<std::string> perform(Application& application, const OutsideRequest& request)
{
    if (request.shortcut)
        application.performShortcut(*request.shortcut);
    if (request.activity)
        application.continueActivity(*request.activity);
    std::vector<std::string> refused;
    for (const auto& url : request.urls)
        if (!application.openURL(applicationURLOf(url)))
            refused.push_back(url);
    return refused;
}

} // namespace tessel
