#include "platform/qt/decoder/Confinement.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/qt/decoder/CallFilter.h"
#include "platform/qt/decoder/Sanitizers.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace tessel::qt {

namespace {

constexpr rlim_t kMostMemory = 1536ULL * 1024 * 1024; // bytes of addresses
constexpr rlim_t kLargestFile = 256ULL * 1024 * 1024; // bytes; pictures in memory count as files
constexpr rlim_t kMostDescriptors = 64;

constexpr const char* kSystemFolders[] = {"/usr", "/lib", "/lib64", "/etc", "/opt", "/var/cache/fontconfig", "/sys"};

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

void allowReading(int rules, const char* folder)
{
    const FileDescriptor opened(::open(folder, O_PATH | O_CLOEXEC));
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
    rule.parent_fd = opened.get();
    if (opened.isOpen()) // what is not there needs no rule
        ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

// Kernels before 5.13, and some systems, do not know how.
bool limitFolders(const std::vector<std::string>& folders)
{
    constexpr std::uint64_t kAllOfTheFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;
    landlock_ruleset_attr attributes = {};
    attributes.handled_access_fs = kAllOfTheFirstVersion;
    const FileDescriptor rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules.isOpen())
        return true;
    for (const auto* folder : kSystemFolders)
        allowReading(rules.get(), folder);
    for (const auto& folder : folders)
        allowReading(rules.get(), folder.c_str());
    return ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

} // namespace

bool confine(const std::vector<std::string>& folders)
{
    return limitResources() && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && limitFolders(folders) && filterCalls();
}

void limitProcessorTime(int seconds)
{
    rusage used = {};
    ::getrusage(RUSAGE_SELF, &used);
    const auto whole = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + seconds + 1);
    const rlimit limits = {whole, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CPU, &limits);
}

} // namespace tessel::qt
