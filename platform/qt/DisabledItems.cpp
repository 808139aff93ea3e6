#include "platform/qt/DisabledItems.h"

#include "platform/qt/ItemFace.h"

#include <QAccessible>
#include <QQuickItem>

namespace tessel::qt {

namespace {

/// Asked for each class of the object, the most derived one first.
QAccessibleInterface* makeFace(const QString& className, QObject* object)
{
    static bool isAskingQt = false;
    auto* const item = qobject_cast<QQuickItem*>(object);
    if (!item || isAskingQt || className != QLatin1String(object->metaObject()->className()))
        return nullptr;
    isAskingQt = true;
    auto* const face = QAccessible::queryAccessibleInterface(item);
    isAskingQt = false;
    return face ? new ItemFace(*item, *face) : nullptr;
}

} // namespace

void tellDisabledItems()
{
    QAccessible::installFactory(makeFace);
}

} // namespace tessel::qt
