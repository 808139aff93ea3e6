#include "platform/run/CurrentThread.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tessel {

namespace {

constexpr int niceValue(QualityOfService quality)
{
    switch (quality) {
    case QualityOfService::UserInitiated:
        return 0;
    case QualityOfService::Utility:
        return 5;
    case QualityOfService::Background:
        return 10;
    }
    return 0;
}

} // namespace

void applyQualityOfService(QualityOfService quality, const std::string& threadName)
{
    constexpr std::size_t kLongestThreadName = 15; // bytes; the kernel refuses longer ones
    ::pthread_setname_np(::pthread_self(), threadName.substr(0, kLongestThreadName).c_str());
    if (const int nice = niceValue(quality))
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), nice);
}

} // namespace tessel
