#include "platform/linux/apps/DesktopFolders.h"

#include "platform/linux/base/UserFolders.h"
#include "platform/linux/files/SharedMimeTypes.h"
#include "platform/linux/files/SharedMimeTypesLines.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace tessel {

namespace {

std::string environmentOr(const char* variable, const char* fallback)
{
    const char* value = std::getenv(variable);
    return value && *value ? value : fallback;
}

std::vector<std::string> fields(std::string_view list)
{
    std::vector<std::string> result;
    while (!list.empty())
        if (const auto field = nextField(list, ':'); !field.empty())
            result.emplace_back(field);
    return result;
}

/// Relative paths are to be ignored.
std::vector<std::string> absolutePaths(std::string_view list)
{
    auto paths = fields(list);
    std::erase_if(paths, [](const std::string& path) { return !path.starts_with('/'); });
    return paths;
}

bool isProgram(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

DesktopFolders DesktopFolders::ofUser()
{
    DesktopFolders folders;
    folders.configuration =
        absolutePaths(userConfigurationFolder() + ":" + environmentOr("XDG_CONFIG_DIRS", "/etc/xdg"));
    folders.data = SharedMimeTypes::userDataFolders();
    folders.programs = absolutePaths(environmentOr("PATH", "/usr/local/bin:/usr/bin:/bin"));
    folders.desktops = fields(environmentOr("XDG_CURRENT_DESKTOP", ""));
    // It becomes a part of a file's name.
    std::erase_if(folders.desktops, [](const std::string& name) { return name.find('/') != std::string::npos; });
    return folders;
}

std::optional<std::string> DesktopFolders::findProgram(std::string_view name) const
{
    if (name.empty())
        return std::nullopt;
    if (name.find('/') != std::string_view::npos)
        return name.front() == '/' && isProgram(std::string(name)) ? std::optional<std::string>(name) : std::nullopt;
    for (const auto& folder : programs)
        if (auto path = folder + "/" + std::string(name); isProgram(path))
            return path;
    return std::nullopt;
}

} // namespace tessel
