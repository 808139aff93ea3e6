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

} // namespace

std::string userDataFolder()
{
    // A relative path is to be ignored.
    if (auto folder = environment("XDG_DATA_HOME"); folder.starts_with('/'))
        return folder;
    const auto own = ownFolder();
    return own.starts_with('/') ? own + "/.local/share" : "";
}

} // namespace tessel
