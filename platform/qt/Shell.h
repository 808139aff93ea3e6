#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessel::qt {

/// What QML sees of the program.
class Shell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("the context property shell is the only one")
    Q_PROPERTY(QString applicationTitle READ applicationTitle CONSTANT)

public:
    [[nodiscard]] QString applicationTitle() const;

    Q_INVOKABLE [[nodiscard]] QString text(const QString& key) const;
};

} // namespace tessel::qt
