#include "platform/ui/Button.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr double kPadding = 6;        ///< points above and below
constexpr double kSmallestWidth = 30; ///< points; narrower ones are hard to hit

} // namespace

void Button::setTitle(std::string title)
{
    if (assign(title_, std::move(title)))
        invalidateIntrinsicContentSize();
}

void Button::setImage(std::optional<Image> image)
{
    if (assign(image_, std::move(image)))
        invalidateIntrinsicContentSize();
}

void Button::setTitleFont(const Font& font)
{
    if (assign(font_, font))
        invalidateIntrinsicContentSize();
}

double Button::titleHeight() const
{
    return platform::installed().device.textMeasurer().measure(title_, font_, kUnlimitedWidth, 1).height;
}

bool Button::press()
{
    if (!enabled())
        return false;
    const auto self = shared_from_this();
    if (const auto action = pressed)
        action();
    return true;
}

Size Button::intrinsicContentSize() const
{
    const auto content = image_
                             ? image_->size()
                             : platform::installed().device.textMeasurer().measure(title_, font_, kUnlimitedWidth, 1);
    return {std::max(content.width, kSmallestWidth), content.height + 2 * kPadding};
}

std::string Button::accessibilityLabel() const
{
    const auto label = View::accessibilityLabel();
    return label.empty() ? title_ : label;
}

} // namespace tessel
