#pragma once

#include <QObject>
#include <QRectF>

namespace tessel::qt {

/// Tells the program of the keyboard that the system puts over the window, as far as the input method says where that
/// is. One that makes the window smaller needs nobody to be told.
class OnScreenKeyboard final : public QObject {
    Q_OBJECT

public:
    explicit OnScreenKeyboard(QObject* parent);

    /// @param frame in the window; empty while there is none
    Q_INVOKABLE void moved(const QRectF& frame);

private:
    void look();

    QRectF frame_;
};

} // namespace tessel::qt
