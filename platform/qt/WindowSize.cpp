#include "platform/qt/WindowSize.h"

#include "platform/base/Platform.h"
#include "platform/base/Value.h"
#include "platform/cloud/UserDefaults.h"

#include <algorithm>
#include <optional>

namespace tessel::qt {

namespace {

constexpr auto kSizeKey = "WindowSize"; ///< a list of the width and the height
constexpr double kTabletSide = 700;
constexpr Size kPhoneWindow{375, 667};
constexpr Size kDesktopWindow{900, 640};
constexpr Size kSmallestWindow{280, 320};

Value sizeValue(const Size& size)
{
    return Value::Array{size.width, size.height};
}

std::optional<Size> rememberedSize()
{
    const auto value = platform::installed().defaults.value(kSizeKey);
    const auto* const sides = value.get<Value::Array>();
    if (!sides || sides->size() != 2)
        return std::nullopt;
    const auto* const width = sides->front().get<double>();
    const auto* const height = sides->back().get<double>();
    return width && height ? std::optional(Size{*width, *height}) : std::nullopt;
}

double sideWithin(double wanted, double smallest, double largest)
{
    return std::min(std::max(wanted, smallest), largest);
}

} // namespace

Idiom idiomOfSize(const Size& size)
{
    return std::min(size.width, size.height) >= kTabletSide ? Idiom::Pad : Idiom::Phone;
}

Size firstWindowSize(const Size& screen)
{
    const auto usual = idiomOfSize(screen) == Idiom::Pad ? kDesktopWindow : kPhoneWindow;
    const auto wanted = rememberedSize().value_or(usual);
    return {sideWithin(wanted.width, kSmallestWindow.width, screen.width),
            sideWithin(wanted.height, kSmallestWindow.height, screen.height)};
}

void rememberWindowSize(const Size& size)
{
    const auto value = sizeValue(size);
    if (platform::installed().defaults.value(kSizeKey) != value)
        platform::installed().defaults.set(kSizeKey, value);
}

} // namespace tessel::qt
