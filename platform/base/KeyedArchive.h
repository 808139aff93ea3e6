#pragma once

#include "platform/base/Error.h"
#include "platform/base/Value.h"

#include <string>
#include <string_view>

namespace tessel::keyedArchive {

/// Text (JSON) from which `unarchived` makes an equal value; bytes, dates and URLs keep their kinds.
[[nodiscard]] std::string archived(const Value&);

/// @returns the value, or a corrupt-file error (259) for text that no archive is, or one nested deeper than 64.
Result<Value> unarchived(std::string_view);

} // namespace tessel::keyedArchive
