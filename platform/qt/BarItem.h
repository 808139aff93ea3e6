#pragma once

#include "platform/qt/views/Node.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQmlIntegration>

#include <memory>

namespace tessel {
class BarButtonItem;
} // namespace tessel

namespace tessel::qt {

/// What QML sees of one entry of a bar. It holds the entry weakly: once that is gone, pressing does nothing.
class BarItem : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Entries of bars are made by the shell.")
    Q_PROPERTY(QString kind MEMBER kind_ CONSTANT)
    Q_PROPERTY(QString title MEMBER title_ NOTIFY changed)
    Q_PROPERTY(QString symbol MEMBER symbol_ NOTIFY changed)
    Q_PROPERTY(bool enabled MEMBER isEnabled_ NOTIFY changed)
    Q_PROPERTY(bool prominent MEMBER isProminent_ CONSTANT)
    Q_PROPERTY(double width MEMBER width_ CONSTANT)
    Q_PROPERTY(tessel::qt::Node* view READ view CONSTANT)

public:
    /// @param view of a custom entry, else null
    BarItem(const std::shared_ptr<BarButtonItem>&, Node* view, QObject* parent);

    [[nodiscard]] Node* view() const { return view_; }
    [[nodiscard]] bool isGone() const { return item_.expired(); }
    /// Reads again what can change.
    void sync();

    Q_INVOKABLE void press();

signals:
    void changed();

private:
    const std::weak_ptr<BarButtonItem> item_;
    const QString kind_; ///< "plain", "flexibleSpace", "fixedSpace" or "custom"
    const bool isProminent_;
    const double width_;
    const QPointer<Node> view_;
    QString title_;
    QString symbol_; ///< the name of a symbol, to be shown in place of the title; or empty
    bool isEnabled_ = true;
};

} // namespace tessel::qt
