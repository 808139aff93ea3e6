#include "platform/ui/Label.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <utility>

namespace tessel {

void Label::setText(std::string text)
{
    const bool wasPlain = !std::exchange(attributed_, std::nullopt);
    if (assign(text_, std::move(text)))
        invalidateIntrinsicContentSize();
    else if (!wasPlain)
        attributedTextChanged();
}

void Label::setAttributedText(AttributedText text)
{
    if (attributed_ == text)
        return;
    text_ = text.text();
    attributed_ = std::move(text);
    attributedTextChanged();
}

void Label::attributedTextChanged()
{
    tellChanged(ViewChange::Properties);
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
    return measured(kUnlimitedWidth);
}

/// What does not fit into one line is cut by the shell, not broken.
Size Label::sizeThatFits(const Size& available) const
{
    if (lines_ == 1 || available.width <= 0)
        return intrinsicContentSize();
    return measured(available.width);
}

Size Label::measured(double width) const
{
    const auto& measurer = platform::installed().device.textMeasurer();
    return attributed_ ? attributed_->measured(measurer, font_, width, lines_)
                       : measurer.measure(text_, font_, width, lines_);
}

Baselines Label::baselines() const
{
    const auto metrics = platform::installed().device.textMeasurer().metrics(font_);
    return {metrics.ascender, metrics.lineHeight - metrics.ascender};
}

std::string Label::accessibilityLabel() const
{
    const auto label = View::accessibilityLabel();
    return label.empty() ? text_ : label;
}

} // namespace tessel
