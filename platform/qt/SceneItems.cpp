#include "platform/qt/SceneItems.h"

#include <QQuickItem>
#include <QVariant>

namespace tessel::qt {

namespace {

using IsWanted = std::function<bool(const QQuickItem&)>;

const QQuickItem* visibleItem(const QQuickItem& scene, const IsWanted& isWanted)
{
    if (!scene.isVisible())
        return nullptr;
    if (isWanted(scene))
        return &scene;
    const auto children = scene.childItems();
    for (auto child = children.rbegin(); child != children.rend(); ++child)
        if (const auto* const found = visibleItem(**child, isWanted))
            return found;
    return nullptr;
}

/// The view in which the item shows a row of the list; null when it shows none.
const QQuickItem* viewOfRow(const QQuickItem& item, const QPersistentModelIndex& row)
{
    const auto index = item.property("index");
    const auto* const view = item.property("view").value<QQuickItem*>();
    const bool shows = index.isValid() && index.toInt() == row.row() && view &&
                       view->property("list").value<QObject*>() == row.model();
    return shows ? view : nullptr;
}

} // namespace

const QQuickItem* itemShowing(const QQuickItem& scene, const char* property,
                              const std::function<bool(const QObject*)>& isWanted)
{
    return visibleItem(scene, [&](const QQuickItem& item) {
        const auto* const shown = item.property(property).value<QObject*>();
        return shown && isWanted(shown);
    });
}

QRectF rectOnScene(const QQuickItem* item)
{
    return item ? item->mapRectToScene(item->boundingRect()) : QRectF();
}

QRectF rectOnScene(const QQuickItem* item, const Rect& part, bool isMirrored)
{
    if (!item || part.width <= 0 || part.height <= 0)
        return rectOnScene(item);
    const double left = isMirrored ? item->width() - part.x - part.width : part.x;
    return item->mapRectToScene({left, part.y, part.width, part.height});
}

QRectF rectOfRow(const QQuickItem& scene, const QPersistentModelIndex& row)
{
    if (!row.isValid())
        return {};
    const auto* const item =
        visibleItem(scene, [&](const QQuickItem& candidate) { return viewOfRow(candidate, row) != nullptr; });
    return item ? rectOnScene(item).intersected(rectOnScene(viewOfRow(*item, row))) : QRectF();
}

} // namespace tessel::qt
