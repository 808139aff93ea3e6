#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <optional>

namespace tessel {

class TypeRegistry;

/// What stands for the server side: the content of documents that are not downloaded, by their identifiers.
[[nodiscard]] URL cloudStoreIn(const URL& home);

/// Makes the drive that a first start shows, with two libraries beside it: folders, documents of the common kinds, a
/// package, links, an alias, shared and tagged items, and documents that are not downloaded.
///
/// It is made beside its place and renamed into it when it is whole; what an interrupted attempt left is removed. No
/// other instance may be doing the same.
/// @param syncedRoot a folder in the home that is not there yet
[[nodiscard]] std::optional<Error> makeExampleDrive(const URL& home, const URL& syncedRoot, const TypeRegistry&);

} // namespace tessel
