#pragma once

#include "platform/base/URL.h"
#include "platform/linux/files/FileDescriptor.h"

#include <chrono>

namespace tessel {

/// Keeps other instances of the program out of a folder's files for the length of a scope. The kernel ends it with the
/// process. On a file system without such locks nobody is kept out.
class FolderLock {
public:
    /// Waits for an instance that is inside.
    /// @param limit how long at most: one that was stopped stays inside until it goes on
    FolderLock(const URL& folder, std::chrono::milliseconds limit);

    /// Whether another instance was inside all the time, and still is.
    [[nodiscard]] bool isHeldElsewhere() const { return heldElsewhere_; }

private:
    FileDescriptor descriptor_;
    bool heldElsewhere_ = false;
};

} // namespace tessel
