#include "platform/qt/OnScreenKeyboard.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <QGuiApplication>
#include <QInputMethod>

#include <utility>

namespace tessel::qt {

namespace {

/// Input methods do not tell how they move theirs.
KeyboardMotion motionFrom(const QRectF& frame)
{
    constexpr double kDuration = 0.25;
    constexpr int kSlowsDown = 2;
    return {{frame.x(), frame.y(), frame.width(), frame.height()}, kDuration, kSlowsDown};
}

} // namespace

OnScreenKeyboard::OnScreenKeyboard(QObject* parent) : QObject(parent)
{
    setObjectName("onScreenKeyboard");
    const auto* const inputMethod = QGuiApplication::inputMethod();
    connect(inputMethod, &QInputMethod::visibleChanged, this, &OnScreenKeyboard::look);
    connect(inputMethod, &QInputMethod::keyboardRectangleChanged, this, &OnScreenKeyboard::look);
}

void OnScreenKeyboard::look()
{
    const auto* const inputMethod = QGuiApplication::inputMethod();
    moved(inputMethod->isVisible() ? inputMethod->keyboardRectangle() : QRectF());
}

void OnScreenKeyboard::moved(const QRectF& frame)
{
    const auto before = std::exchange(frame_, frame);
    auto& device = platform::installed().device;
    if (before == frame || (before.isEmpty() && frame.isEmpty()))
        return;
    if (frame.isEmpty())
        device.keyboardWillHide(motionFrom(before));
    else
        device.keyboardWillShow(motionFrom(frame));
}

} // namespace tessel::qt
