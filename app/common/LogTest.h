#pragma once

namespace tessel {

/// Writes one line at each level: a diagnostic routine that the program itself never calls.
void _TesselDriveLogTest();

} // namespace tessel
