#include "platform/qt/BarItem.h"

#include "platform/ui/BarButtonItem.h"

#include <QJSEngine>

namespace tessel::qt {

namespace {

QString nameOf(BarButtonItem::Kind kind)
{
    switch (kind) {
    case BarButtonItem::Kind::FlexibleSpace:
        return QStringLiteral("flexibleSpace");
    case BarButtonItem::Kind::FixedSpace:
        return QStringLiteral("fixedSpace");
    case BarButtonItem::Kind::Custom:
        return QStringLiteral("custom");
    case BarButtonItem::Kind::Plain:
        break;
    }
    return QStringLiteral("plain");
}

QString symbolOf(const BarButtonItem& item)
{
    const auto& image = item.image();
    return image && image->kind() == Image::Kind::Symbol ? QString::fromStdString(image->name()) : QString();
}

} // namespace

BarItem::BarItem(const std::shared_ptr<BarButtonItem>& item, Node* view, QObject* parent)
    : QObject(parent), item_(item), kind_(nameOf(item->kind())),
      isProminent_(item->style() == BarButtonItem::Style::Done), width_(item->width()), view_(view)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    sync();
}

void BarItem::sync()
{
    const auto item = item_.lock();
    if (!item)
        return;
    const auto title = QString::fromStdString(item->title());
    const auto symbol = symbolOf(*item);
    const bool isEnabled = item->enabled();
    if (title == title_ && symbol == symbol_ && isEnabled == isEnabled_)
        return;
    title_ = title;
    symbol_ = symbol;
    isEnabled_ = isEnabled;
    emit changed();
}

void BarItem::press()
{
    if (const auto item = item_.lock())
        item->press();
}

} // namespace tessel::qt
