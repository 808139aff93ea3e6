#pragma once

#include <QColor>

#include <string_view>

namespace tessel::qt {

/// The colour of a tag: that of its name, for the names of the seven usual colours in English, in any case; transparent
/// for all others, which are shown as a ring.
[[nodiscard]] QColor tagColor(std::string_view name);

} // namespace tessel::qt
