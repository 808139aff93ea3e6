#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "preview/PreviewDetailsViewController.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr double kAboveKeyboard = 30;
constexpr double kAboveName = 30;
constexpr int kCurves = 4;

} // namespace

void PreviewDetailsViewController::registerForKeyboardNotifications()
{
    const auto observe = [weak = std::weak_ptr(self())](const char* name, auto handler) {
        return platform::installed().notifications.observe(name, [weak, handler] {
            if (const auto self = weak.lock())
                ((*self).*handler)(platform::installed().device.keyboard());
        });
    };
    keyboardWillShow_ = observe(kKeyboardWillShowNotification, &PreviewDetailsViewController::keyboardWillBeShown);
    keyboardWillHide_ = observe(kKeyboardWillHideNotification, &PreviewDetailsViewController::keyboardWillBeHidden);
}

void PreviewDetailsViewController::unregisterForKeyboardNotifications()
{
    keyboardWillShow_ = {};
    keyboardWillHide_ = {};
}

/// A keyboard of keys leaves everything in its place.
void PreviewDetailsViewController::keyboardWillBeShown(const KeyboardMotion& info)
{
    const auto height = info.beginFrame.height;
    if (height <= 0)
        return;
    auto inset = scrollView->contentInset();
    inset.bottom = height - _mainStackViewContentViewYDifference() + kAboveKeyboard;
    _animateWithKeyboardInfoDictionary(info, [this, inset] {
        scrollView->setContentInset(inset);
        const auto most = scrollView->contentSize().height - scrollView->bounds().height + inset.bottom;
        scrollView->setContentOffset({0, offsetOfName(inset.top, most)});
    });
}

/// Scrolls the name towards the bar, but only to bring it out from beneath that the other way.
double PreviewDetailsViewController::offsetOfName(double top, double most) const
{
    const auto name = filenameTextField->frameIn(*scrollView).y;
    const auto wanted = name - top - kAboveName;
    const auto offset = std::min(std::max(most, 0.0), std::max(wanted, 0.0));
    return name - offset < top ? std::max(wanted, -top) : offset;
}

void PreviewDetailsViewController::keyboardWillBeHidden(const KeyboardMotion& info)
{
    _animateWithKeyboardInfoDictionary(info, [this] { scrollView->setContentInset(scrollViewDefaultEdgeInsets()); });
}

/// What is free beneath the details is not to be left free above the keyboard a second time.
double PreviewDetailsViewController::_mainStackViewContentViewYDifference() const
{
    const auto stack = mainStackView->frameIn(*scrollView);
    const auto& content = contentView->frame();
    return std::max(0.0, content.y + content.height - (stack.y + stack.height));
}

void PreviewDetailsViewController::_animateWithKeyboardInfoDictionary(const KeyboardMotion& info,
                                                                      const std::function<void()>& animationBlock)
{
    Animation animation;
    animation.duration = info.duration;
    animation.options = Animation::kLayoutSubviews | Animation::kBeginFromCurrentState;
    if (info.curve >= 0 && info.curve < kCurves)
        animation.options |= static_cast<std::uint32_t>(info.curve) * Animation::kCurve;
    view().animate(animation, animationBlock);
}

} // namespace tessel
