#include "platform/qt/DisabledItems.h"

#include <QAccessible>
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

/// Qt's own face of an item, and whether the item is disabled.
class ItemFace final : public QObject, public QAccessibleInterface {
    Q_OBJECT

public:
    ItemFace(QQuickItem& item, QAccessibleInterface& face) : item_(item), face_(face), id_(QAccessible::uniqueId(&face))
    {
        connect(&item, &QQuickItem::enabledChanged, this, &ItemFace::tellChange);
        QQmlProperty(&item, kUsable).connectNotifySignal(this, SLOT(tellChange()));
    }
    ~ItemFace() override { QAccessible::deleteAccessibleInterface(id_); }

    [[nodiscard]] QAccessible::State state() const override
    {
        auto state = face_.state();
        state.disabled = isDisabled(item_);
        return state;
    }

    [[nodiscard]] bool isValid() const override { return face_.isValid(); }
    [[nodiscard]] QObject* object() const override { return face_.object(); }
    [[nodiscard]] QWindow* window() const override { return face_.window(); }
    [[nodiscard]] QList<QPair<QAccessibleInterface*, QAccessible::Relation>> relations(
        QAccessible::Relation match) const override
    {
        return face_.relations(match);
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override { return face_.focusChild(); }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override { return face_.childAt(x, y); }
    [[nodiscard]] QAccessibleInterface* parent() const override { return face_.parent(); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override { return face_.child(index); }
    [[nodiscard]] int childCount() const override { return face_.childCount(); }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        return face_.indexOfChild(child);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override { return face_.text(kind); }
    void setText(QAccessible::Text kind, const QString& text) override { face_.setText(kind, text); }
    [[nodiscard]] QRect rect() const override { return face_.rect(); }
    [[nodiscard]] QAccessible::Role role() const override { return face_.role(); }
    [[nodiscard]] QColor foregroundColor() const override { return face_.foregroundColor(); }
    [[nodiscard]] QColor backgroundColor() const override { return face_.backgroundColor(); }
    void virtual_hook(int id, void* data) override { face_.virtual_hook(id, data); }
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override { return face_.interface_cast(type); }

private slots:
    void tellChange()
    {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(&item_, changed);
        QAccessible::updateAccessibility(&event);
    }

private:
    QQuickItem& item_;
    QAccessibleInterface& face_; ///< Qt's, by its identifier
    const QAccessible::Id id_;
};

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

#include "DisabledItems.moc"
