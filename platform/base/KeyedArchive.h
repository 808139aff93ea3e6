#pragma once

#include "platform/base/Error.h"
#include "platform/base/Value.h"

#include <string>
#include <string_view>

namespace tessel::keyedArchive {

/// Text (JSON) from which `unarchived` makes an equal value; bytes, dates and URLs keep their kinds.
[[nodiscard]] std::string archived(const Value&);

/// @returns the value, or a corrupt-file error (259) for text that is no archive, is longer than 16 MiB, or is nested
///          deeper than 64 lists and maps.
Result<Value> unarchived(std::string_view);

} // namespace tessel::keyedArchive
