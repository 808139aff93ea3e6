#include "platform/linux/StartFolders.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/base/UserFolders.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace tessel {

namespace {

Error failure(int errorNumber, const std::string& path, std::string description)
{
    auto error = errnoError(errorNumber, URL::file(path));
    error.description = std::move(description);
    return error;
}

Error failureWithReason(int errorNumber, const std::string& path, const std::string& what)
{
    auto error = errnoError(errorNumber, URL::file(path));
    error.description = what + ": " + path + ": " + error.failureReason;
    return error;
}

Result<URL> resolvedFolder(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    struct stat status = {};
    if (!resolved && (errno == ENOENT || errno == ENOTDIR))
        return failure(errno, path, "No such folder: " + path);
    if (!resolved || ::stat(resolved.get(), &status) != 0)
        return failureWithReason(errno, path, "Cannot read the folder");
    if (!S_ISDIR(status.st_mode))
        return failure(ENOTDIR, path, "Not a folder: " + path);
    return URL::file(resolved.get());
}

bool isAllowed(const URL& folder, int mode)
{
    return ::faccessat(AT_FDCWD, folder.path().c_str(), mode, AT_EACCESS) == 0;
}

// Leaves errno as it was.
bool isPreparedHome(const URL& folder)
{
    const int errorNumber = errno;
    const bool isPrepared = isAllowed(folder, R_OK | X_OK) && isAllowed(folder.appending("catalog.sqlite"), R_OK);
    errno = errorNumber;
    return isPrepared;
}

// Stops at the first folder that cannot be made; one that is there already is none of those.
bool makeFolders(const std::string& path)
{
    for (auto end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        if (::mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST && errno != EROFS)
            return false;
    return ::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST;
}

} // namespace

Result<URL> homeFolder(const std::string& given)
{
    const auto dataFolder = given.empty() ? userDataFolder() : std::string();
    if (given.empty() && dataFolder.empty())
        return failure(ENOENT, given, "The user has no folder of their own: choose one with --home.");
    const auto path = given.empty() ? dataFolder + "/tesseldrive" : given;
    if (!makeFolders(path))
        return failureWithReason(errno, path, "Cannot make the folder");
    auto folder = resolvedFolder(path);
    if (folder && !isAllowed(*folder, R_OK | W_OK | X_OK) && !isPreparedHome(*folder))
        return failureWithReason(errno, path, "Cannot write to the folder");
    return folder;
}

Result<URL> driveFolder(const std::string& path)
{
    auto folder = resolvedFolder(path);
    if (folder && !isAllowed(*folder, R_OK | X_OK))
        return failureWithReason(errno, path, "Cannot read the folder");
    return folder;
}

URL coordinationFolder(const URL& home)
{
    const auto runtime = userRuntimeFolder();
    return runtime.empty() ? home.appending("coordination") : URL::file(runtime).appending("tesseldrive");
}

} // namespace tessel
