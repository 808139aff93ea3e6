#pragma once

#include "platform/qt/decoder/OpenDocument.h"

#include <QSvgRenderer>

namespace tessel::qt {

/// A vector drawing in SVG. What it refers to outside of itself is left out.
class DrawingDocument final : public OpenDocument {
public:
    /// Reads all of it.
    explicit DrawingDocument(QFile&);

    ContentFacts facts() override;
    Picture paint(const Wish&) override;

private:
    std::optional<ContentProblem> problem_;
    QSvgRenderer renderer_;
};

} // namespace tessel::qt
