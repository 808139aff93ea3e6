#pragma once

#include <system_error>
#include <thread>
#include <utility>

namespace tessel {

/// Starts a thread. The standard library throws when the system has none left, which is no reason for a program to end.
/// @returns one that is not joinable when none could be started
template <typename Work>
[[nodiscard]] std::thread startThread(Work&& work)
{
    try {
        return std::thread(std::forward<Work>(work));
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace tessel
