#pragma once

namespace tessel::qt {

/// Takes from this process for good what playing a document that it is given open does not need: it reads files of the
/// system, and of the user those that tell where sound goes; it writes to devices of sound and pictures only, starts no
/// programs, and talks to this device's own programs only, unless sound goes elsewhere (PULSE_SERVER). Memory, files
/// and descriptors are limited. Call it before there are threads.
/// @returns false when the kernel refuses what it should know
[[nodiscard]] bool confinePlayer();

} // namespace tessel::qt
