#pragma once

namespace tessel {
struct Sharing;
} // namespace tessel

namespace tessel::qt {

/// Has what is copied go to the clipboard of the window's display. Only while there is an application object.
void copyToClipboard(Sharing&);

} // namespace tessel::qt
