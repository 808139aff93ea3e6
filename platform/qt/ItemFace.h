#pragma once

#include <QAccessible>
#include <QObject>
#include <QPointer>
#include <QQuickItem>

namespace tessel::qt {

/// What assistive technology sees of an item: Qt's own face of it, and whether it is disabled, or not `usable`.
class ItemFace final : public QObject, public QAccessibleInterface {
    Q_OBJECT

public:
    ItemFace(QQuickItem& item, QAccessibleInterface& face);
    ~ItemFace() override;

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] bool isValid() const override { return item_ && face_.isValid(); }
    [[nodiscard]] QObject* object() const override;
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
    void tellChange();

private:
    const QPointer<QQuickItem> item_;
    QAccessibleInterface& face_; ///< Qt's, which may end before this one, but not before the item
    const QAccessible::Id id_;
};

} // namespace tessel::qt
