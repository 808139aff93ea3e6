#include "tests/window/driver/Driver.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace tessel {

namespace {

// Milliseconds.
constexpr int kLongPress = 700; ///< the window takes 500 for one
constexpr int kRest = 200;      ///< longer than any animation's pause between two frames
constexpr int kPatience = 10'000;

QQuickWindow* window()
{
    for (auto* candidate : QGuiApplication::topLevelWindows())
        if (auto* quick = qobject_cast<QQuickWindow*>(candidate); quick && quick->isVisible())
            return quick;
    return nullptr;
}

void answer(const QString& line)
{
    const auto bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

QString nameOf(QQuickItem* item)
{
    const auto* face = QAccessible::queryAccessibleInterface(item);
    return face && face->isValid() ? face->text(QAccessible::Name) : QString();
}

QRectF placeOf(const QQuickItem* item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

/// What can be seen of these, in the order in which it is painted.
void addVisible(QQuickItem* item, const QRectF& within, QList<QQuickItem*>& found)
{
    if (!item->isVisible() || item->opacity() == 0)
        return;
    const auto visible = item->clip() ? within.intersected(placeOf(item)) : within;
    if (item->width() > 0 && item->height() > 0 && placeOf(item).intersects(visible))
        found.append(item);
    for (auto* child : item->childItems())
        addVisible(child, visible, found);
}

QList<QQuickItem*> visibleItems()
{
    QList<QQuickItem*> found;
    if (auto* shown = window())
        addVisible(shown->contentItem(), placeOf(shown->contentItem()), found);
    return found;
}

/// The topmost one of that name that a finger could reach.
QQuickItem* itemNamed(const QString& name)
{
    QQuickItem* last = nullptr;
    for (auto* item : visibleItems())
        if (nameOf(item) == name && item->isEnabled())
            last = item;
    return last;
}

/// A row's accessible name begins with the name of its item.
QQuickItem* itemMeant(const QString& name)
{
    if (auto* item = itemNamed(name))
        return item;
    QQuickItem* last = nullptr;
    for (auto* item : visibleItems())
        if (item->isEnabled() && nameOf(item).startsWith(name + ", "))
            last = item;
    return last;
}

QPoint centre(const QQuickItem* item)
{
    return placeOf(item).intersected(placeOf(window()->contentItem())).center().toPoint();
}

QString missing(const QString& name)
{
    return "nothing called \"" + name + "\" on the screen";
}

} // namespace

Driver::Driver()
{
    QAccessible::setActive(true);
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &Driver::read);
}

void Driver::read()
{
    char bytes[4096];
    const auto count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
        sender()->deleteLater();
        return QGuiApplication::quit();
    }
    unread_.append(bytes, static_cast<qsizetype>(count));
    for (auto end = unread_.indexOf('\n'); end >= 0; end = unread_.indexOf('\n')) {
        const auto line = QString::fromUtf8(unread_.left(end));
        unread_.remove(0, end + 1);
        run(line);
    }
}

void Driver::run(const QString& line)
{
    const auto refusal = execute(line.section(' ', 0, 0), line.section(' ', 1));
    answer(refusal ? "error: " + *refusal : QString("ok"));
}

Driver::Reason Driver::execute(const QString& word, const QString& argument)
{
    const auto number = argument.section(' ', 0, 0).toInt();
    const auto others = argument.section(' ', 1);
    if (!window())
        return "no window";
    if (word == "tree")
        return tree();
    if (word == "focus")
        return focus();
    if (word == "tap")
        return tap(argument);
    if (word == "press")
        return press(argument);
    if (word == "swipe")
        return swipe(others, number);
    if (word == "hold")
        return hold(others, number);
    if (word == "release")
        return release();
    if (word == "rest")
        return rest();
    if (word == "flick")
        return flick(number);
    if (word == "key")
        return key(argument);
    if (word == "type")
        return type(argument);
    if (word == "resize")
        return resize(number, others.toInt());
    if (word == "keyboard")
        return keyboard(number);
    if (word == "grab")
        return grab(argument);
    return "unknown word \"" + word + "\"";
}

Driver::Reason Driver::tree() const
{
    auto items = visibleItems();
    std::ranges::stable_sort(items, {},
                             [](const auto* item) { return std::pair(placeOf(item).y(), placeOf(item).x()); });
    for (auto* item : items) {
        const auto name = nameOf(item);
        if (name.isEmpty())
            continue;
        const auto place = placeOf(item).toRect();
        const auto* const face = QAccessible::queryAccessibleInterface(item);
        answer(QString("%1 | %2 | %3 %4 %5 %6%7")
                   .arg(QVariant::fromValue(face->role()).toString(), name)
                   .arg(place.x())
                   .arg(place.y())
                   .arg(place.width())
                   .arg(place.height())
                   .arg(item->isEnabled() && !face->state().disabled ? "" : " | disabled"));
    }
    return std::nullopt;
}

Driver::Reason Driver::focus() const
{
    if (auto* item = window()->activeFocusItem())
        answer(nameOf(item));
    return std::nullopt;
}

Driver::Reason Driver::tap(const QString& name)
{
    const auto* item = itemMeant(name);
    if (!item)
        return missing(name);
    QTest::touchEvent(window(), finger()).press(0, centre(item), window());
    QTest::touchEvent(window(), finger()).release(0, centre(item), window());
    return std::nullopt;
}

Driver::Reason Driver::press(const QString& name)
{
    const auto* item = itemMeant(name);
    if (!item)
        return missing(name);
    const auto place = centre(item);
    QTest::touchEvent(window(), finger()).press(0, place, window());
    QTest::qWait(kLongPress);
    QTest::touchEvent(window(), finger()).release(0, place, window());
    return std::nullopt;
}

Driver::Reason Driver::swipe(const QString& name, int distance)
{
    if (const auto problem = hold(name, distance))
        return problem;
    return release();
}

Driver::Reason Driver::hold(const QString& name, int distance)
{
    const auto* item = itemMeant(name);
    if (!item)
        return missing(name);
    drag(centre(item), {distance, 0}, 12);
    return std::nullopt;
}

Driver::Reason Driver::release()
{
    QTest::touchEvent(window(), finger()).release(0, place_, window());
    return std::nullopt;
}

Driver::Reason Driver::rest()
{
    QElapsedTimer sinceFrame;
    sinceFrame.start();
    const auto watch =
        connect(window(), &QQuickWindow::frameSwapped, window(), [&sinceFrame] { sinceFrame.restart(); });
    const bool isResting = QTest::qWaitFor([&sinceFrame] { return sinceFrame.elapsed() > kRest; }, kPatience);
    disconnect(watch);
    return isResting ? Reason() : Reason("the window does not come to rest");
}

Driver::Reason Driver::flick(int distance)
{
    drag({window()->width() / 2, window()->height() / 2}, {0, distance}, 6);
    return release();
}

Driver::Reason Driver::key(const QString& sequence) const
{
    QTest::keySequence(window(), QKeySequence(sequence));
    return std::nullopt;
}

Driver::Reason Driver::type(const QString& text) const
{
    for (const auto character : text)
        QTest::sendKeyEvent(QTest::Click, window(), Qt::Key_unknown, QString(character), Qt::NoModifier);
    return std::nullopt;
}

Driver::Reason Driver::resize(int width, int height) const
{
    window()->resize(width, height);
    return std::nullopt;
}

Driver::Reason Driver::keyboard(int height)
{
    const QRectF frame(0, window()->height() - height, window()->width(), height);
    for (auto* const item : visibleItems()) {
        const auto* const context = qmlContext(item);
        const auto* const shell = context ? context->contextProperty("shell").value<QObject*>() : nullptr;
        auto* const keyboard = shell ? shell->findChild<QObject*>("onScreenKeyboard") : nullptr;
        if (!keyboard)
            continue;
        QQmlComponent component(context->engine());
        component.setData("import QtQuick; Rectangle { color: 'silver'; z: 1000 }", {});
        auto* const picture = qobject_cast<QQuickItem*>(component.create());
        picture->setParent(window());
        picture->setParentItem(window()->contentItem());
        picture->setPosition(frame.topLeft());
        picture->setSize(frame.size());
        QMetaObject::invokeMethod(keyboard, "moved", Q_ARG(QRectF, frame));
        return std::nullopt;
    }
    return "nobody to tell";
}

Driver::Reason Driver::grab(const QString& file) const
{
    return window()->grabWindow().save(file) ? Reason() : Reason("cannot write " + file);
}

QPointingDevice* Driver::finger()
{
    if (!finger_)
        finger_ = QTest::createTouchDevice();
    return finger_;
}

void Driver::drag(const QPoint& from, const QPoint& by, int steps)
{
    QTest::touchEvent(window(), finger()).press(0, from, window());
    for (int step = 1; step <= steps; ++step) {
        QTest::touchEvent(window(), finger()).move(0, from + by * step / steps, window());
        QTest::qWait(8); // a finger's reports come at the screen's rate
    }
    place_ = from + by;
}

} // namespace tessel
