#include "platform/qt/views/TextNodes.h"

#include "platform/base/Platform.h"
#include "platform/qt/views/Fonts.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/Label.h"

#include <algorithm>
#include <cmath>

namespace tessel::qt {

namespace {

QString symbolOf(const std::optional<Image>& image)
{
    const bool isSymbol = image && image->kind() == Image::Kind::Symbol;
    return isSymbol ? QString::fromStdString(image->name()) : QString();
}

/// In whole points, for others are not read.
QString imageElement(const Image& image, bool dark)
{
    return QStringLiteral(R"(<img src="%1" width="%2" height="%3">)")
        .arg(imageSource(image, dark).toHtmlEscaped())
        .arg(std::ceil(image.size().width))
        .arg(std::ceil(image.size().height));
}

/// Rich text cannot be raised: what of an image would be below a text that is stays away.
Image aboveBaseline(const Image& image, double baselineOffset)
{
    const auto& [width, height] = image.size();
    return baselineOffset > 0 && image.drawing()
               ? Image::drawn(image.drawing(), {width, std::ceil(height - baselineOffset)})
               : image;
}

double baselineOffsetOf(const AttributedText& text)
{
    const auto run = std::ranges::find_if(text.runs(), [](const auto& each) { return !each.attachment; });
    return run == text.runs().end() ? 0 : run->attributes.baselineOffset;
}

/// Blanks would be shown as one.
QString escaped(const std::string& text)
{
    return QString::fromStdString(text).toHtmlEscaped().replace(QStringLiteral("  "), QStringLiteral("&nbsp; "));
}

} // namespace

int horizontalAlignment(TextAlignment alignment)
{
    const bool isMirrored = platform::installed().device.layoutDirection == LayoutDirection::RightToLeft;
    switch (alignment) {
    case TextAlignment::Natural:
        return Qt::AlignLeft;
    case TextAlignment::Left:
        return isMirrored ? Qt::AlignRight : Qt::AlignLeft;
    case TextAlignment::Center:
        return Qt::AlignHCenter;
    case TextAlignment::Right:
        return isMirrored ? Qt::AlignLeft : Qt::AlignRight;
    }
    return Qt::AlignLeft;
}

std::shared_ptr<Label> LabelNode::label() const
{
    return std::static_pointer_cast<Label>(view());
}

QString LabelNode::text() const
{
    const auto label = this->label();
    return label ? QString::fromStdString(label->text()) : QString();
}

QString LabelNode::richText() const
{
    const auto label = this->label();
    if (!label || !label->attributedText())
        return {};
    const bool isMirrored = platform::installed().device.layoutDirection == LayoutDirection::RightToLeft;
    auto rich = QStringLiteral(R"(<div dir="%1">)").arg(isMirrored ? "rtl" : "ltr");
    const auto offset = baselineOffsetOf(*label->attributedText());
    for (const auto& run : label->attributedText()->runs())
        rich += run.attachment ? imageElement(aboveBaseline(*run.attachment, offset), dark()) : escaped(run.text);
    return rich + "</div>";
}

QFont LabelNode::font() const
{
    const auto label = this->label();
    return systemFont(label ? label->font() : Font());
}

QColor LabelNode::textColor() const
{
    const auto label = this->label();
    return adapted(label ? label->textColor() : Color::black());
}

int LabelNode::alignment() const
{
    const auto label = this->label();
    return horizontalAlignment(label ? label->textAlignment() : TextAlignment::Natural);
}

int LabelNode::lines() const
{
    const auto label = this->label();
    return label ? static_cast<int>(label->numberOfLines()) : 1;
}

int LabelNode::elide() const
{
    const auto label = this->label();
    switch (label ? label->lineBreak() : LineBreak::TruncateTail) {
    case LineBreak::WordWrap:
        return Qt::ElideNone;
    case LineBreak::TruncateTail:
        return Qt::ElideRight;
    case LineBreak::TruncateMiddle:
        return lines() == 1 ? Qt::ElideMiddle : Qt::ElideRight;
    }
    return Qt::ElideRight;
}

std::shared_ptr<Button> ButtonNode::button() const
{
    return std::static_pointer_cast<Button>(view());
}

QString ButtonNode::title() const
{
    const auto button = this->button();
    return button ? QString::fromStdString(button->title()) : QString();
}

QString ButtonNode::symbol() const
{
    const auto button = this->button();
    return button ? symbolOf(button->image()) : QString();
}

QString ButtonNode::imageSource() const
{
    const auto button = this->button();
    return button && symbol().isEmpty() ? qt::imageSource(button->image(), dark()) : QString();
}

bool ButtonNode::isEnabled() const
{
    const auto button = this->button();
    return button && button->enabled();
}

QFont ButtonNode::font() const
{
    const auto button = this->button();
    return systemFont(button ? button->titleFont() : Font());
}

void ButtonNode::press()
{
    if (const auto button = this->button())
        button->press();
}

} // namespace tessel::qt
