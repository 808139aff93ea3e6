#include "files/TesselDriveApp_FileTagColors.h"

#include "platform/ui/CompositingFilter.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessel {

namespace {

constexpr float kEpsilon = std::numeric_limits<float>::epsilon();

struct Components {
    float red;
    float green;
    float blue;
    float alpha;
};

/// What a channel of the source and one of the backdrop make.
using Blend = float (*)(float source, float backdrop);

Components componentsOf(const Color& color)
{
    return {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue),
            static_cast<float>(color.alpha)};
}

bool isZero(float component)
{
    return std::abs(component) < kEpsilon;
}

template <typename Channel>
Color colorOfChannels(const Components& source, const Components& backdrop, const Channel& channel, float alpha)
{
    return {channel(source.red, backdrop.red), channel(source.green, backdrop.green),
            channel(source.blue, backdrop.blue), alpha};
}

/// Porter and Duff 1984, of components that are not premultiplied.
Color sourceOver(const Components& source, const Components& backdrop)
{
    const float alpha = source.alpha + backdrop.alpha * (1 - source.alpha);
    if (isZero(alpha))
        return {1, 1, 1, alpha};
    return colorOfChannels(
        source, backdrop,
        [&](float s, float d) { return (source.alpha * s + (1 - source.alpha) * backdrop.alpha * d) / alpha; }, alpha);
}

Color separable(const Components& source, const Components& backdrop, Blend blend)
{
    return colorOfChannels(
        source, backdrop, [&](float s, float d) { return source.alpha * blend(s, d) + (1 - source.alpha) * d; },
        backdrop.alpha);
}

float multiply(float s, float d)
{
    return s * d;
}

float screen(float s, float d)
{
    return static_cast<float>(1.0 - (1.0 - s) * (1.0 - d));
}

float overlay(float s, float d)
{
    return static_cast<float>(d < 0.5 ? 2.0 * s * d : 1.0 - 2.0 * (1.0 - s) * (1.0 - d));
}

float darken(float s, float d)
{
    return std::min(s, d);
}

float lighten(float s, float d)
{
    return std::max(s, d);
}

/// A full channel of the source burns everything out, black included.
float colorDodge(float s, float d)
{
    return isZero(1 - s) ? 1 : static_cast<float>(d / (1.0 - s));
}

float plusLighter(float s, float d)
{
    return std::min(s + d, 1.0F);
}

Color colorBurn(const Components& source, const Components& backdrop)
{
    return colorOfChannels(
        source, backdrop,
        [&](float s, float d) {
            const float premultiplied = d * backdrop.alpha;
            const auto burnt = isZero(s) ? 0.0F : static_cast<float>(1.0 - (1.0 - premultiplied) / s);
            return source.alpha * burnt + (1 - source.alpha) * premultiplied;
        },
        backdrop.alpha);
}

Color plusDarker(const Components& source, const Components& backdrop)
{
    const float alpha = std::clamp(source.alpha + backdrop.alpha, 0.0F, 1.0F);
    return colorOfChannels(
        source, backdrop,
        [&](float s, float d) {
            if (isZero(backdrop.alpha) || isZero(alpha))
                return 0.0F;
            const float darkness = std::clamp((source.alpha - s * source.alpha) + (backdrop.alpha - d), 0.0F, 1.0F);
            return std::clamp(alpha - darkness / backdrop.alpha, 0.0F, 1.0F);
        },
        backdrop.alpha);
}

/// Null for another filter.
Blend blendOf(std::string_view filter)
{
    struct Entry {
        std::string_view filter;
        Blend blend;
    };
    static constexpr Entry kBlends[] = {
        {compositingFilter::kMultiply, multiply},      {compositingFilter::kScreen, screen},
        {compositingFilter::kOverlay, overlay},        {compositingFilter::kDarken, darken},
        {compositingFilter::kLighten, lighten},        {compositingFilter::kColorDodge, colorDodge},
        {compositingFilter::kPlusLighter, plusLighter}};
    const auto* const found = std::find_if(std::begin(kBlends), std::end(kBlends),
                                           [&](const Entry& entry) { return entry.filter == filter; });
    return found == std::end(kBlends) ? nullptr : found->blend;
}

} // namespace

Color tsd_colorBlendedWithColor(const Color& backdrop, const std::optional<Color>& source,
                                std::optional<std::string_view> compositingFilter)
{
    if (!source || isZero(static_cast<float>(source->alpha)))
        return backdrop;
    const auto over = componentsOf(*source);
    const auto under = componentsOf(backdrop);
    const auto filter = compositingFilter.value_or(compositingFilter::kSourceOver);
    if (filter == compositingFilter::kNormal || filter == compositingFilter::kSourceOver)
        return sourceOver(over, under);
    if (const auto blend = blendOf(filter))
        return separable(over, under, blend);
    if (filter == compositingFilter::kColorBurn)
        return colorBurn(over, under);
    return filter == compositingFilter::kPlusDarker ? plusDarker(over, under) : backdrop;
}

Color tsd_colorBlendedWithColor(const Color& backdrop, const std::optional<Color>& source)
{
    return tsd_colorBlendedWithColor(backdrop, source, compositingFilter::kSourceOver);
}

} // namespace tessel
