#include "platform/linux/base/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace tessel {

namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string ownFolder()
{
    if (auto folder = environment("HOME"); folder.starts_with('/'))
        return folder;
    const auto* user = ::getpwuid(::geteuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

std::string userFolder(const char* variable, const char* place)
{
    // A relative path is to be ignored.
    if (auto folder = environment(variable); folder.starts_with('/'))
        return folder;
    const auto own = ownFolder();
    return own.starts_with('/') ? own + place : "";
}

} // namespace

std::string userDataFolder()
{
    return userFolder("XDG_DATA_HOME", "/.local/share");
}

std::string userStateFolder()
{
    return userFolder("XDG_STATE_HOME", "/.local/state");
}

std::string userConfigurationFolder()
{
    return userFolder("XDG_CONFIG_HOME", "/.config");
}

std::string userRuntimeFolder()
{
    const auto folder = environment("XDG_RUNTIME_DIR");
    return folder.starts_with('/') ? folder : "";
}

} // namespace tessel
