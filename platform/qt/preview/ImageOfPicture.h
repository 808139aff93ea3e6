#pragma once

#include "platform/documents/DocumentDecoder.h"

#include <QImage>

namespace tessel::qt {

/// The picture without a copy; the image keeps its pixels.
inline QImage imageOf(const ContentPicture& picture)
{
    auto* const pixels = new std::shared_ptr<const std::byte>(picture.pixels);
    return {reinterpret_cast<const uchar*>(pixels->get()),
            picture.width,
            picture.height,
            picture.stride,
            QImage::Format_ARGB32_Premultiplied,
            [](void* owner) { delete static_cast<std::shared_ptr<const std::byte>*>(owner); },
            pixels};
}

} // namespace tessel::qt
