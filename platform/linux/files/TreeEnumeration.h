#pragma once

#include "platform/files/FileManager.h"
#include "platform/linux/files/FileDescriptor.h"

#include <functional>
#include <stop_token>
#include <string_view>

namespace tessel {

using EntryVisitor = std::function<void(const URL&, const FileAttributes&)>;
using EntryErrorHandler = std::function<OnEnumerationError(const URL&, const Error&)>;

/// Visits the entries of a folder as FileManager::enumerateShallow does, with two descriptors at most.
[[nodiscard]] std::optional<Error> enumerateEntries(
    const URL& folder, const std::function<bool(const URL&, const FileAttributes&)>& visit);

/// Visits every entry below a folder as FileManager::enumerateDeep does. Uses three descriptors at most and no
/// recursion, however deep the tree is. An item that goes meanwhile is left out without an error. The order within a
/// folder is the file system's.
/// @param stop ends the enumeration early
void enumerateTree(const URL& folder, const EntryVisitor& visit, const EntryErrorHandler& onError,
                   const std::stop_token& stop = {});

/// Opens a folder below another by a path of any length: in parts that the kernel takes (PATH_MAX), which may not end
/// in a link.
/// @param path relative; empty for the folder itself
[[nodiscard]] FileDescriptor openBelow(int root, std::string_view path);

} // namespace tessel
