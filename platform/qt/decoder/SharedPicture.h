#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QImage>

namespace tessel::qt {

/// A picture as a file in memory: premultiplied, rows without gaps, sealed so that who gets it can rely on it.
/// @returns none when there is no memory
[[nodiscard]] FileDescriptor sharedPicture(const QImage&);

} // namespace tessel::qt
