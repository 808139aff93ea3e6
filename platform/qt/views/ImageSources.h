#pragma once

#include "platform/ui/Image.h"

#include <QQuickImageProvider>
#include <QString>

#include <optional>
#include <string_view>

namespace tessel::qt {

/// The URL by which QML shows an image: of a provider (icon, symbol, drawn), or of the file; empty for none. A symbol
/// is in the colour of black text.
[[nodiscard]] QString imageSource(const std::optional<Image>&, bool dark);

/// Bytes such as a path's in the form in which they can be a part of a URL, every byte kept.
[[nodiscard]] QString percentEncoded(std::string_view bytes);

/// Shows the images that the program drew itself: image://drawn/<number>, as long as something still holds the image.
class DrawnImageProvider final : public QQuickImageProvider {
public:
    static constexpr auto kName = "drawn";

    DrawnImageProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tessel::qt
