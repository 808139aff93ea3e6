#pragma once

#include "tests/support/LoggingPlatform.h"

namespace tessel {

using ItemPlatform = LoggingPlatform;

} // namespace tessel
