#pragma once

#include <cerrno>

namespace tessel {

/// Makes a system call again for as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(const Call& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace tessel
