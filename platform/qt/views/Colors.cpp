#include "platform/qt/views/Colors.h"

#include <algorithm>
#include <utility>

namespace tessel::qt {

namespace {

constexpr double kGreyTolerance = 0.03; // how far the components of a shade may lie apart
constexpr double kDarkest = 0.075;      // what white becomes
constexpr double kLightest = 0.95;      // what black becomes

bool isShade(const Color& color)
{
    const auto [least, most] = std::minmax({color.red, color.green, color.blue});
    return most - least <= kGreyTolerance;
}

Color mirrored(const Color& color)
{
    const auto level = (color.red + color.green + color.blue) / 3;
    return Color::gray(kLightest - level * (kLightest - kDarkest), color.alpha);
}

float component(double value)
{
    return static_cast<float>(std::clamp(value, 0.0, 1.0));
}

} // namespace

QColor adaptedColor(const Color& color, bool dark)
{
    const auto shown = dark && isShade(color) ? mirrored(color) : color;
    return QColor::fromRgbF(component(shown.red), component(shown.green), component(shown.blue),
                            component(shown.alpha));
}

} // namespace tessel::qt
