#pragma once

#include <functional>

namespace tessel {

/// Runs work on a thread of its own and makes the n-th (from 1) of its system calls on files fail, whoever makes it:
/// the kernel asks the test before each of them (seccomp). Those that would only wait for the disk succeed at once.
/// @returns whether there was an n-th call
[[nodiscard]] bool runWithFailingCall(int n, int errorNumber, const std::function<void()>& work);

/// Runs work in the same way and, before its n-th call, something else.
[[nodiscard]] bool runInterrupted(int n, const std::function<void()>& meanwhile, const std::function<void()>& work);

/// Whether the system lets a test do so.
[[nodiscard]] bool canMakeCallsFail();

} // namespace tessel
