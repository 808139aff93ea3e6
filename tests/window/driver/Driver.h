#pragma once

#include <QObject>
#include <QPoint>
#include <QString>

#include <optional>

class QPointingDevice;
class QQuickItem;
class QQuickWindow;

namespace tessel {

/// Uses the window as a person would, by the lines that a test writes to the program's standard input. Each is answered
/// by what it found and a last line: `ok`, or `error: ` and a reason. Things are called by their accessible names.
class Driver : public QObject {
    Q_OBJECT

public:
    Driver();

private:
    using Reason = std::optional<QString>;

    void read();
    void run(const QString& line);
    Reason execute(const QString& word, const QString& argument);

    Reason tree() const;
    Reason tap(const QString& name);
    Reason press(const QString& name);
    Reason swipe(const QString& name, int distance);
    /// The same, but the finger stays on the glass until `release`.
    Reason hold(const QString& name, int distance);
    Reason release();
    /// Waits until nothing is painted any more.
    static Reason rest();
    Reason flick(int distance);
    Reason key(const QString& sequence) const;
    Reason type(const QString& text) const;
    Reason resize(int width, int height) const;
    /// Puts a keyboard over the lower part of the window.
    static Reason keyboard(int height);
    Reason grab(const QString& file) const;
    Reason focus() const;

    [[nodiscard]] QPointingDevice* finger();
    /// Puts the finger down and moves it.
    void drag(const QPoint& from, const QPoint& by, int steps);

    QByteArray unread_;
    QPoint place_; ///< of the finger, when it is down
    QPointingDevice* finger_ = nullptr;
};

} // namespace tessel
