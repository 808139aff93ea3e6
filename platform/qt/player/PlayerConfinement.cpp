#include "platform/qt/player/PlayerConfinement.h"

#include "platform/qt/decoder/CallFilter.h"
#include "platform/qt/decoder/FolderLimit.h"
#include "platform/qt/decoder/Sanitizers.h"

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QStandardPaths>

#include <sys/prctl.h>
#include <sys/resource.h>

#include <string>
#include <vector>

namespace tessel::qt {

namespace {

constexpr rlim_t kMostMemory = 2048ULL * 1024 * 1024; // bytes of addresses
constexpr rlim_t kLargestFile = 256ULL * 1024 * 1024; // bytes; pictures in memory count as files
constexpr rlim_t kMostDescriptors = 256;

bool limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit limits = {most, most};
    return ::setrlimit(resource, &limits) == 0;
}

bool limitResources()
{
    return limit(RLIMIT_FSIZE, kLargestFile) && limit(RLIMIT_NOFILE, kMostDescriptors) && limit(RLIMIT_CORE, 0) &&
           (kIsSanitized || limit(RLIMIT_AS, kMostMemory));
}

/// Qt's own files, and what the libraries of sound read of the user's to find their server.
std::vector<std::string> readable()
{
    const auto settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QStringList paths = {QLibraryInfo::path(QLibraryInfo::PluginsPath),
                               QLibraryInfo::path(QLibraryInfo::LibrariesPath),
                               settings + "/pulse",
                               settings + "/pipewire",
                               qEnvironmentVariable("XDG_RUNTIME_DIR") + "/pulse",
                               qEnvironmentVariable("PULSE_COOKIE"),
                               QDir::homePath() + "/.pulse-cookie",
                               QDir::homePath() + "/.asoundrc",
                               "/dev/urandom"};
    std::vector<std::string> found;
    for (const auto& path : paths)
        if (!path.isEmpty())
            found.push_back(QFile::encodeName(path).toStdString());
    return found;
}

bool isSoundElsewhere()
{
    const auto server = qEnvironmentVariable("PULSE_SERVER");
    return !server.isEmpty() && !server.startsWith('/') && !server.startsWith("unix:");
}

} // namespace

bool confinePlayer()
{
    return limitResources() && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           limitFolders(readable(), {"/dev/null", "/dev/snd", "/dev/dri"}) && filterDangerousCalls(isSoundElsewhere());
}

} // namespace tessel::qt
