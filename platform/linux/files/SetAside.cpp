#include "platform/linux/files/SetAside.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/RenameWithoutReplacing.h"

#include <cerrno>

namespace tessel {

std::optional<Error> setAside(const URL& file)
{
    for (int n = 1;; ++n) {
        const auto free = URL::file(file.path() + ".damaged-" + std::to_string(n));
        if (renameWithoutReplacing(file, free) || errno == ENOENT)
            return std::nullopt;
        if (errno != EEXIST)
            return errnoError(errno, file);
    }
}

} // namespace tessel
