#pragma once

#include "platform/ui/Geometry.h"

#include <QPersistentModelIndex>
#include <QRectF>

#include <functional>

class QObject;
class QQuickItem;

namespace tessel::qt {

/// The visible item at or below `scene`, the uppermost one first, whose property holds an object that is wanted; null
/// when there is none.
[[nodiscard]] const QQuickItem* itemShowing(const QQuickItem& scene, const char* property,
                                            const std::function<bool(const QObject*)>& isWanted);

/// The item in the window's coordinates; empty for null.
[[nodiscard]] QRectF rectOnScene(const QQuickItem*);
/// A part of it, counted from its leading edge; all of it for a part that is empty.
[[nodiscard]] QRectF rectOnScene(const QQuickItem*, const Rect& part, bool isMirrored);
/// What can be seen of a list's row; empty when that is nothing, or the row has gone.
[[nodiscard]] QRectF rectOfRow(const QQuickItem& scene, const QPersistentModelIndex& row);

} // namespace tessel::qt
