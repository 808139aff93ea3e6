#pragma once

namespace tessel::qt {

/// From now on assistive technology is told which items are disabled, or not `usable`, and when that changes. Qt 6.4
/// tells it of none.
void tellDisabledItems();

} // namespace tessel::qt
