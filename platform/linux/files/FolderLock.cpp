#include "platform/linux/files/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

namespace tessel {

FolderLock::FolderLock(const URL& folder)
    : descriptor_(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    while (descriptor_.isOpen() && ::flock(descriptor_.get(), LOCK_EX) != 0 && errno == EINTR)
        continue;
}

} // namespace tessel
