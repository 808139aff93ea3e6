#include "bench/window/Meter.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include <cstdio>

namespace tessel {

namespace {

constexpr int kFirstRows = 5; ///< that every window has room for

} // namespace

QQuickItem* Meter::find(QQuickItem* item, const QString& name)
{
    if (item->objectName() == name && item->isVisible())
        return item;
    for (auto* child : item->childItems())
        if (auto* found = find(child, name))
            return found;
    return nullptr;
}

Meter::Meter(int rows) : rows_(rows)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool Meter::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Expose && !window_ && (window_ = qobject_cast<QQuickWindow*>(object))) {
        QCoreApplication::instance()->removeEventFilter(this);
        sinceFrame_.start();
        connect(window_, &QQuickWindow::frameSwapped, this, &Meter::frameSwapped, Qt::DirectConnection);
    }
    return false;
}

void Meter::frameSwapped()
{
    const auto since = static_cast<double>(sinceFrame_.nsecsElapsed()) / 1e6;
    sinceFrame_.restart();
    painted(since);
}

QQuickItem* Meter::list() const
{
    auto* const found = find(window_->contentItem(), "folderList");
    if (!found || found->property("count").toInt() < rows_)
        return nullptr;
    int rows = 0;
    for (const auto* row : found->property("contentItem").value<QQuickItem*>()->childItems())
        rows += row->objectName() == "row" && row->isVisible();
    return rows >= kFirstRows ? found : nullptr;
}

bool Meter::isShown() const
{
    return rows_ == 0 || list();
}

void Meter::tell(const char* name, double value)
{
    std::printf("%s %f\n", name, value);
    std::fflush(stdout);
}

void Meter::end()
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), "quit", Qt::QueuedConnection);
}

} // namespace tessel
