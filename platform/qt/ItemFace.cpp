#include "platform/qt/ItemFace.h"

#include <QQmlProperty>
#include <QQuickItem>

namespace tessel::qt {

namespace {

constexpr auto kUsable = "usable";

bool isDisabled(const QQuickItem& item)
{
    const auto usable = item.property(kUsable);
    return !item.isEnabled() || (usable.isValid() && !usable.toBool());
}

} // namespace

ItemFace::ItemFace(QQuickItem& item, QAccessibleInterface& face)
    : item_(&item), face_(face), id_(QAccessible::uniqueId(&face))
{
    connect(&item, &QQuickItem::enabledChanged, this, &ItemFace::tellChange);
    QQmlProperty(&item, kUsable).connectNotifySignal(this, SLOT(tellChange()));
}

ItemFace::~ItemFace()
{
    QAccessible::deleteAccessibleInterface(id_);
}

QObject* ItemFace::object() const
{
    return item_;
}

QAccessible::State ItemFace::state() const
{
    auto state = face_.state();
    state.disabled = isDisabled(*item_);
    return state;
}

void ItemFace::tellChange()
{
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(item_, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace tessel::qt
