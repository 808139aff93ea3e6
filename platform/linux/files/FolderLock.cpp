#include "platform/linux/files/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <thread>

namespace tessel {

namespace {

constexpr auto kPause = std::chrono::milliseconds(5);

} // namespace

FolderLock::FolderLock(const URL& folder, std::chrono::milliseconds limit)
    : descriptor_(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (descriptor_.isOpen() && ::flock(descriptor_.get(), LOCK_EX | LOCK_NB) != 0 &&
           (errno == EWOULDBLOCK || errno == EINTR)) {
        heldElsewhere_ = std::chrono::steady_clock::now() >= end;
        if (heldElsewhere_)
            return;
        std::this_thread::sleep_for(kPause);
    }
}

} // namespace tessel
