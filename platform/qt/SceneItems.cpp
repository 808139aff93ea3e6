#include "platform/qt/SceneItems.h"

#include <QQuickItem>
#include <QVariant>

namespace tessel::qt {

const QQuickItem* itemShowing(const QQuickItem& scene, const char* property,
                              const std::function<bool(const QObject*)>& isWanted)
{
    if (!scene.isVisible())
        return nullptr;
    const auto* const shown = scene.property(property).value<QObject*>();
    if (shown && isWanted(shown))
        return &scene;
    const auto children = scene.childItems();
    for (auto child = children.rbegin(); child != children.rend(); ++child)
        if (const auto* const found = itemShowing(**child, property, isWanted))
            return found;
    return nullptr;
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

} // namespace tessel::qt
