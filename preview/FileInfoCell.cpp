#include "preview/FileInfoCell.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/layout/VisualFormat.h"

#include <utility>

namespace tessel {

namespace {

TextAlignment towardsTheValue()
{
    const bool leftToRight = platform::installed().device.layoutDirection == LayoutDirection::LeftToRight;
    return leftToRight ? TextAlignment::Right : TextAlignment::Left;
}

void hugContent(Label& label, double horizontally)
{
    label.setLaidOutByConstraints(true);
    label.setContentHugging(LayoutAxis::Horizontal, horizontally);
    label.setContentHugging(LayoutAxis::Vertical, LayoutPriority::kRequired);
    label.setCompressionResistance(LayoutAxis::Vertical, LayoutPriority::kRequired);
}

} // namespace

FileInfoCell::FileInfoCell(std::string name, std::string value, std::size_t maxLines)
    : nameLabel(std::make_shared<Label>(std::move(name))), valueLabel(std::make_shared<Label>(std::move(value)))
{
    nameLabel->setTextColor(Color::gray(0.5));
    nameLabel->setFont(font());
    nameLabel->setTextAlignment(towardsTheValue());
    hugContent(*nameLabel, LayoutPriority::kLow + 1);
    valueLabel->setFont(font());
    valueLabel->setNumberOfLines(maxLines);
    hugContent(*valueLabel, LayoutPriority::kLow);
    valueLabel->setCompressionResistance(LayoutAxis::Horizontal, LayoutPriority::kLow);
    addSubview(nameLabel);
    addSubview(valueLabel);

    const NamedViews views{{"_nameLabel", nameLabel.get()}, {"_valueLabel", valueLabel.get()}};
    for (const auto* const format : {"H:|[_nameLabel]-10-[_valueLabel]|", "V:|[_nameLabel]", "V:|[_valueLabel]|"})
        LayoutConstraint::activate(constraintsWithVisualFormat(format, views).value());
}

} // namespace tessel
