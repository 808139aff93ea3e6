#pragma once

#include "platform/qt/decoder/OpenDocument.h"

#include <QByteArray>
#include <QImageReader>

#include <optional>

namespace tessel::qt {

/// An image of pixels, which may move.
class ImageDocument final : public OpenDocument {
public:
    /// @param format as QImageReader names it
    ImageDocument(std::unique_ptr<QFile>, QByteArray format);

    ContentFacts facts() override;
    Picture paint(const Wish&) override;

private:
    void restart();
    [[nodiscard]] std::optional<ContentProblem> problem();
    [[nodiscard]] QSize scaledSize(QSize box) const;
    [[nodiscard]] bool goTo(int index, QSize scaled);
    void read(int index, QSize scaled);

    const std::unique_ptr<QFile> file_;
    const QByteArray format_;
    std::unique_ptr<QImageReader> reader_;
    QSize size_; ///< as stored; a picture that lies is turned afterwards
    bool isOnItsSide_ = false;
    int next_ = 0;                              ///< the frame that the reader reads next
    std::optional<std::pair<int, QSize>> last_; ///< which frame was read last, and how large it was to be
    Picture picture_;
};

} // namespace tessel::qt
