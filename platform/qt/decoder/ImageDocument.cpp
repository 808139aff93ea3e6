#include "platform/qt/decoder/ImageDocument.h"

#include <QColorSpace>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 200LL * 1024 * 1024;
constexpr qint64 kMostPixels = 120'000'000; // beyond what telephones take
constexpr int kMostFrames = 10'000;

bool isTooLarge(QSize size)
{
    return qint64(size.width()) * size.height() > kMostPixels;
}

QSize fitted(QSize size, QSize box)
{
    if (size.width() <= box.width() && size.height() <= box.height())
        return size;
    return size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

} // namespace

ImageDocument::ImageDocument(std::unique_ptr<QFile> file, QByteArray format)
    : file_(std::move(file)), format_(std::move(format))
{
    restart();
    size_ = reader_->size();
    isOnItsSide_ = reader_->transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

// Frames are read in their order.
void ImageDocument::restart()
{
    file_->seek(0);
    reader_ = std::make_unique<QImageReader>(file_.get(), format_);
    reader_->setAutoTransform(true);
    next_ = 0;
}

std::optional<ContentProblem> ImageDocument::problem()
{
    if (file_->size() > kMostBytes || isTooLarge(size_))
        return ContentProblem::TooLarge;
    if (size_.isEmpty() && picture_.image.isNull())
        read(0, {}); // some formats tell no size before
    return size_.isEmpty() ? std::optional(ContentProblem::Damaged) : std::nullopt;
}

ContentFacts ImageDocument::facts()
{
    ContentFacts facts{.kind = ContentKind::Image, .problem = problem(), .size = {}};
    if (facts.problem)
        return facts;
    const auto upright = isOnItsSide_ ? size_.transposed() : size_;
    facts.size = {double(upright.width()), double(upright.height())};
    facts.count = reader_->supportsAnimation() ? std::clamp(reader_->imageCount(), 1, kMostFrames) : 1;
    return facts;
}

OpenDocument::Picture ImageDocument::paint(const Wish& wish)
{
    if (const auto found = problem())
        return {.image = {}, .problem = *found};
    const auto scaled = scaledSize(wish.box);
    if (isTooMuchToPaint(scaled))
        return {.image = {}, .problem = ContentProblem::TooLarge};
    if (last_ != std::pair(wish.index, scaled))
        read(wish.index, scaled);
    auto picture = picture_;
    if (!picture.image.isNull() && wish.part != QRectF(0, 0, 1, 1))
        picture.image = picture.image.copy(partOf(picture.image.size(), wish.part));
    return picture;
}

// In the picture as it is stored.
QSize ImageDocument::scaledSize(QSize box) const
{
    return fitted(size_, isOnItsSide_ ? box.transposed() : box);
}

bool ImageDocument::goTo(int index, QSize scaled)
{
    if (index < next_ || scaled != reader_->scaledSize())
        restart();
    reader_->setScaledSize(scaled);
    for (; next_ < index; ++next_) {
        if (next_ >= kMostFrames || reader_->read().isNull())
            return false;
    }
    return true;
}

void ImageDocument::read(int index, QSize scaled)
{
    last_ = {index, scaled};
    picture_ = {};
    if (!goTo(index, scaled == size_ ? QSize() : scaled))
        return;
    auto image = reader_->read();
    ++next_;
    if (image.isNull() || isTooLarge(image.size()))
        return;
    if (size_.isEmpty())
        size_ = isOnItsSide_ ? image.size().transposed() : image.size();
    if (scaled.isValid()) // not every reader heeds it
        image =
            image.scaled(isOnItsSide_ ? scaled.transposed() : scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (image.colorSpace().isValid())
        image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    picture_ = {
        .image = image, .problem = {}, .milliseconds = reader_->supportsAnimation() ? reader_->nextImageDelay() : 0};
}

} // namespace tessel::qt
