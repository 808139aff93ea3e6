#include "platform/ui/Label.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <utility>

namespace tessel {

void Label::setText(std::string text)
{
    if (assign(text_, std::move(text)))
        invalidateIntrinsicContentSize();
}

void Label::setFont(const Font& font)
{
    if (assign(font_, font))
        invalidateIntrinsicContentSize();
}

void Label::setTextColor(const Color& color)
{
    assign(textColor_, color);
}

void Label::setTextAlignment(TextAlignment alignment)
{
    assign(alignment_, alignment);
}

void Label::setNumberOfLines(std::size_t lines)
{
    if (assign(lines_, lines))
        invalidateIntrinsicContentSize();
}

void Label::setLineBreak(LineBreak lineBreak)
{
    assign(lineBreak_, lineBreak);
}

Size Label::intrinsicContentSize() const
{
    return platform::installed().device.textMeasurer().measure(text_, font_, kUnlimitedWidth, lines_);
}

/// What does not fit into one line is cut by the shell, not broken.
Size Label::sizeThatFits(const Size& available) const
{
    if (lines_ == 1 || available.width <= 0)
        return intrinsicContentSize();
    return platform::installed().device.textMeasurer().measure(text_, font_, available.width, lines_);
}

std::string Label::accessibilityLabel() const
{
    const auto label = View::accessibilityLabel();
    return label.empty() ? text_ : label;
}

} // namespace tessel
