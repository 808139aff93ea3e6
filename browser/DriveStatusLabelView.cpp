#include "browser/DriveStatusLabelView.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <cmath>

namespace tessel {

namespace {

constexpr double kGap = 0.25;    ///< between text and button, of the text's height
constexpr double kRaised = -1.0; ///< points; the text's descenders make it look too low

double onPixel(double points)
{
    const auto scale = platform::installed().device.screenScale;
    return std::round(points * scale) / scale;
}

double centered(double length, double within)
{
    return onPixel((within - length) * 0.5);
}

} // namespace

void DriveStatusLabelView::setPrimaryLabelText(const std::string& text)
{
    primaryLabel->setText(text);
    primaryLabel->sizeToFit();
    setNeedsLayout();
}

void DriveStatusLabelView::showLowQuota(bool show)
{
    showLowQuota_ = show;
    quotaButton->setHidden(!show);
    setNeedsLayout();
}

void DriveStatusLabelView::layoutSubviews()
{
    primaryLabel->sizeToFit();
    quotaButton->sizeToFit();
    const auto label = primaryLabel->frame();
    const auto button = quotaButton->frame().height < 1 ? label : quotaButton->frame();
    const auto ownTitle = quotaButton->titleHeight();
    const auto title = ownTitle < 1 ? label.height : ownTitle;
    const auto padding = (button.height - title) * 0.5;
    const auto text = primaryLabel->text().empty() ? 0 : label.height;
    const auto gap = showLowQuota_ ? label.height * kGap : 0;
    const auto block = showLowQuota_ ? gap + title + text : text;

    primaryLabel->setFrame({centered(label.width, frame().width), onPixel((frame().height - block) * 0.5 + kRaised),
                            label.width, label.height});
    const auto bottom = primaryLabel->frame().y + primaryLabel->frame().height;
    quotaButton->setFrame(
        {centered(button.width, frame().width), onPixel(bottom + gap - padding), button.width, button.height});
}

} // namespace tessel
