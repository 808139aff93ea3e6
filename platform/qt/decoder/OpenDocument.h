#pragma once

#include "platform/documents/DocumentDecoder.h"

#include <QFile>
#include <QImage>
#include <QRectF>
#include <QSize>

#include <memory>

namespace tessel::qt {

/// A document that is being read, and what is worth keeping of it from one wish to the next.
class OpenDocument {
public:
    struct Wish {
        int index = 0;           ///< of the frame or page, from 0
        QSize box;               ///< what the whole picture fits into
        QRectF part{0, 0, 1, 1}; ///< in fractions of the whole picture
    };
    struct Picture {
        QImage image; ///< null for a problem
        ContentProblem problem = ContentProblem::Damaged;
        int milliseconds = 0;
    };

    OpenDocument() = default;
    virtual ~OpenDocument() = default;
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;

    [[nodiscard]] virtual ContentFacts facts() = 0;
    [[nodiscard]] virtual Picture paint(const Wish&) = 0;
};

/// Opens a document as what its content is, then as what its name says.
/// @param name the file name
/// @returns null when nothing here reads such a document
[[nodiscard]] std::unique_ptr<OpenDocument> openDocument(std::unique_ptr<QFile>, const QString& name);

/// The part of a whole picture of these pixels that a wish asks for, in whole pixels; never empty.
[[nodiscard]] QRect partOf(QSize whole, const QRectF& part);
/// Whether so many pixels are too many to paint.
[[nodiscard]] bool isTooMuchToPaint(QSize);

} // namespace tessel::qt
