#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include <memory>

namespace tessel {
class ViewController;
} // namespace tessel

namespace tessel::qt {

/// A controller on the screen, from its coming to the end of its leaving: the program's controllers are the truth, and
/// QML animates what became of them. Keeps the controller alive as long as it can be seen.
class Presence : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(bool animated READ isAnimated NOTIFY phaseChanged)

public:
    enum Phase {
        Covered,  ///< wholly, once what lies above it does not move any more
        Entering, ///< on top already, for all but the eye
        Shown,
        Leaving, ///< gone already, for all but the eye; it takes no input
    };
    Q_ENUM(Phase)

    Presence(std::shared_ptr<ViewController>, QObject* parent);
    ~Presence() override;

    [[nodiscard]] Phase phase() const { return phase_; }
    /// Whether entering or leaving is to be seen.
    [[nodiscard]] bool isAnimated() const { return isAnimated_; }
    void setPhase(Phase, bool isAnimated = false);

    [[nodiscard]] const std::shared_ptr<ViewController>& controller() const { return controller_; }

    /// QML calls it when the coming or leaving has been seen; a second call, or a late one, does nothing.
    Q_INVOKABLE void finished();

signals:
    void phaseChanged();
    /// It has come, or has gone.
    void ended();

private:
    const std::shared_ptr<ViewController> controller_;
    Phase phase_ = Shown;
    bool isAnimated_ = false;
};

} // namespace tessel::qt
