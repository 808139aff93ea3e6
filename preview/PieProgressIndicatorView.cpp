#include "preview/PieProgressIndicatorView.h"

#include "platform/ui/Canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessel {

namespace {

constexpr double kThinnestPart = 0.005;
constexpr double kTwelveOClock = -std::numbers::pi / 2;

} // namespace

void PieProgressIndicatorView::draw(Canvas& canvas) const
{
    const auto fraction = std::clamp(static_cast<double>(progress_), kThinnestPart, 1 - kThinnestPart);
    const Point center = {bounds().width / 2, bounds().height / 2};
    canvas.setFillColor(Color::lightGray());
    canvas.setStrokeColor(Color::lightGray());
    Path wedge;
    wedge.moveTo(center);
    wedge.addArc(center, std::ceil(bounds().height / 2), kTwelveOClock,
                 fraction * 2 * std::numbers::pi + kTwelveOClock);
    wedge.lineTo(center);
    canvas.fill(wedge);
    canvas.setLineWidth(1);
    canvas.strokeOval(bounds());
}

} // namespace tessel
