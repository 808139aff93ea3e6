#pragma once

namespace tessel::qt {

/// Whether the user wants small pictures of documents: yes, unless "orvane.TesselDriveApp.ShowsThumbnails" in the user
/// defaults says no. Main thread only.
[[nodiscard]] bool showsThumbnails();

} // namespace tessel::qt
