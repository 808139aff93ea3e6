#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <functional>

namespace tessel {

/// Visits the name and inode of every entry below a folder, at any depth, hidden ones included, links not followed: no
/// more than the folders themselves tell. What cannot be read, or vanishes meanwhile, is passed over.
/// @param visit answers whether to go on
void visitDeepNames(const URL& folder, const std::function<bool(const URL&, std::uint64_t inode)>& visit);

} // namespace tessel
