#pragma once

#include <string_view>

namespace tessel {

/// Whether bytes are well-formed UTF-8 (Unicode, table 3-7): nothing overlong, no surrogates.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

} // namespace tessel
