#pragma once

#include "platform/base/URL.h"
#include "platform/linux/files/FileDescriptor.h"

namespace tessel {

/// Keeps other instances of the program out of a folder's files for the length of a scope; waits for one that is
/// inside. The kernel ends it with the process. On a file system without such locks nobody is kept out.
class FolderLock {
public:
    explicit FolderLock(const URL& folder);

private:
    FileDescriptor descriptor_;
};

} // namespace tessel
