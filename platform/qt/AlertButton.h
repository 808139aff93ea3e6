#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <memory>

namespace tessel {
class AlertAction;
class AlertController;
} // namespace tessel

namespace tessel::qt {

/// What QML sees of one button of an alert. It holds both weakly.
class AlertButton : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Buttons of alerts are made by the shell.")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString style READ style CONSTANT)
    Q_PROPERTY(bool enabled MEMBER isEnabled_ NOTIFY changed)

public:
    AlertButton(const std::shared_ptr<AlertController>&, const std::shared_ptr<AlertAction>&, QObject* parent);

    [[nodiscard]] std::shared_ptr<AlertAction> action() const { return action_.lock(); }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString style() const; ///< "default", "cancel" or "destructive"
    /// Reads again what can change.
    void sync();

    Q_INVOKABLE void press();

signals:
    void changed();

private:
    const std::weak_ptr<AlertController> alert_;
    const std::weak_ptr<AlertAction> action_;
    bool isEnabled_ = true;
};

} // namespace tessel::qt
