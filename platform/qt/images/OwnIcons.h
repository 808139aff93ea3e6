#pragma once

#include <QString>
#include <QStringList>

namespace tessel::qt {

/// Which of the program's own icons stands for an item.
/// @param names of icons (Icon Naming Specification, freedesktop), the best one first
/// @param kind "file", "folder", "package", "link" or "library": decides when no name is known
/// @returns a resource; there is always one
[[nodiscard]] QString ownIconPath(const QStringList& names, const QString& kind);

} // namespace tessel::qt
