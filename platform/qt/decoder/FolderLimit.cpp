#include "platform/qt/decoder/FolderLimit.h"

#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace tessel::qt {

namespace {

constexpr const char* kSystemFolders[] = {"/usr", "/lib", "/lib64", "/etc", "/opt", "/var/cache/fontconfig", "/sys"};

/// What is not there needs no rule.
void allow(int rules, const char* path, std::uint64_t access)
{
    const FileDescriptor opened(::open(path, O_PATH | O_CLOEXEC));
    struct stat status = {};
    if (!opened.isOpen() || ::fstat(opened.get(), &status) != 0)
        return;
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = S_ISDIR(status.st_mode) ? access | LANDLOCK_ACCESS_FS_READ_DIR : access;
    rule.parent_fd = opened.get();
    ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

} // namespace

// Kernels before 5.13, and some systems, do not know how.
bool limitFolders(const std::vector<std::string>& readable, const std::vector<std::string>& writable)
{
    constexpr std::uint64_t kAllOfTheFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;
    landlock_ruleset_attr attributes = {};
    attributes.handled_access_fs = kAllOfTheFirstVersion;
    const FileDescriptor rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules.isOpen())
        return true;
    for (const auto* folder : kSystemFolders)
        allow(rules.get(), folder, LANDLOCK_ACCESS_FS_READ_FILE);
    for (const auto& path : readable)
        allow(rules.get(), path.c_str(), LANDLOCK_ACCESS_FS_READ_FILE);
    for (const auto& path : writable)
        allow(rules.get(), path.c_str(), LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE);
    return ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

} // namespace tessel::qt
