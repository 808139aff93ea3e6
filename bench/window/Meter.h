#pragma once

#include <QElapsedTimer>
#include <QObject>

class QQuickItem;
class QQuickWindow;

namespace tessel {

/// Watches the frames of the program's window. What it finds goes to the standard output as lines of a name and a
/// number; the program is then ended.
class Meter : public QObject {
    Q_OBJECT

public:
    /// @param rows that a list must have to count as shown; 0: the window has no list
    explicit Meter(int rows);

    bool eventFilter(QObject*, QEvent*) override;

protected:
    /// After each frame, with the time since the one before, in milliseconds.
    virtual void painted(double since) = 0;

    /// The first visible item of a name in an item, itself included. Not by QObject's own tree, in which a loader's
    /// item has no fixed place.
    [[nodiscard]] static QQuickItem* find(QQuickItem*, const QString& name);
    /// The list with all its rows, of which the first ones are in the scene; null: not yet.
    [[nodiscard]] QQuickItem* list() const;
    [[nodiscard]] bool isShown() const;
    static void tell(const char* name, double value);
    static void end();

private:
    void frameSwapped();

    const int rows_;
    QQuickWindow* window_ = nullptr;
    QElapsedTimer sinceFrame_;
};

} // namespace tessel
