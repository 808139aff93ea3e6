#pragma once

#include <QSize>

#include <algorithm>
#include <array>

namespace tessel::qt {

/// The sizes of the desktop's shared thumbnails: the longer side in pixels.
enum class ThumbnailSize : int { Normal = 128, Large = 256, ExtraLarge = 512, ExtraExtraLarge = 1024 };

inline constexpr std::array kThumbnailSizes = {ThumbnailSize::Normal, ThumbnailSize::Large, ThumbnailSize::ExtraLarge,
                                               ThumbnailSize::ExtraExtraLarge};

[[nodiscard]] constexpr int side(ThumbnailSize size)
{
    return static_cast<int>(size);
}

/// The smallest size that fills `pixels` without being enlarged; the largest when none does.
[[nodiscard]] inline ThumbnailSize thumbnailSizeFor(QSize pixels)
{
    const int wanted = std::max(pixels.width(), pixels.height());
    const auto* fitting = std::ranges::find_if(kThumbnailSizes, [&](auto size) { return side(size) >= wanted; });
    return fitting == kThumbnailSizes.end() ? kThumbnailSizes.back() : *fitting;
}

} // namespace tessel::qt
