#pragma once

#include "platform/base/URL.h"

#include <string>

namespace tessel {

/// What is to be found of a text: the beginning of the file, at most 256 KiB, in UTF-8, without waiting for anybody and
/// without following links.
/// @returns empty for what cannot be read or is no text
[[nodiscard]] std::string textToIndex(const URL&);

} // namespace tessel
