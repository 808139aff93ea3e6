#include "platform/qt/decoder/Confinement.h"

#include "platform/qt/decoder/CallFilter.h"
#include "platform/qt/decoder/FolderLimit.h"
#include "platform/qt/decoder/Sanitizers.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tessel::qt {

namespace {

constexpr rlim_t kMostMemory = 1536ULL * 1024 * 1024; // bytes of addresses
constexpr rlim_t kLargestFile = 256ULL * 1024 * 1024; // bytes; pictures in memory count as files
constexpr rlim_t kMostDescriptors = 64;

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
