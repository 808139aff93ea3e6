#include "platform/ui/Canvas.h"

namespace tessel {

void Path::moveTo(const Point& point)
{
    elements_.push_back({Verb::Move, point});
}

void Path::lineTo(const Point& point)
{
    elements_.push_back({Verb::Line, point});
}

void Path::addArc(const Point& center, double radius, double startAngle, double endAngle)
{
    elements_.push_back({Verb::Arc, center, radius, startAngle, endAngle});
}

void Path::close()
{
    elements_.push_back({Verb::Close, {}});
}

} // namespace tessel
