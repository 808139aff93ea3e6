#include "platform/qt/decoder/PagesDocument.h"

#include <QPainter>
#include <QPdfDocumentRenderOptions>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 1024LL * 1024 * 1024;
constexpr int kLongestSide = 100'000; // pixels of a whole page of which parts are painted

// What a page does not paint is paper.
QImage onPaper(const QImage& page)
{
    QImage image(page.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawImage(0, 0, page);
    return image;
}

} // namespace

PagesDocument::PagesDocument(std::unique_ptr<QFile> file) : file_(std::move(file))
{
    if (file_->size() <= kMostBytes)
        pages_.load(file_.get());
}

std::optional<ContentProblem> PagesDocument::problem() const
{
    if (file_->size() > kMostBytes)
        return ContentProblem::TooLarge;
    if (pages_.status() == QPdfDocument::Status::Ready && pages_.pageCount() > 0)
        return std::nullopt;
    const bool isLocked = pages_.error() == QPdfDocument::Error::IncorrectPassword ||
                          pages_.error() == QPdfDocument::Error::UnsupportedSecurityScheme;
    return isLocked ? ContentProblem::Encrypted : ContentProblem::Damaged;
}

ContentFacts PagesDocument::facts()
{
    ContentFacts facts{.kind = ContentKind::Pages, .problem = problem(), .size = {}};
    if (facts.problem)
        return facts;
    const auto first = pages_.pagePointSize(0);
    facts.size = {first.width(), first.height()};
    facts.count = pages_.pageCount();
    return facts;
}

OpenDocument::Picture PagesDocument::paint(const Wish& wish)
{
    if (const auto found = problem())
        return {.image = {}, .problem = *found};
    const auto points = wish.index < pages_.pageCount() ? pages_.pagePointSize(wish.index) : QSizeF();
    if (points.isEmpty())
        return {};
    const auto whole = points.scaled(wish.box.boundedTo({kLongestSide, kLongestSide}), Qt::KeepAspectRatio)
                           .toSize()
                           .expandedTo({1, 1});
    const auto part = partOf(whole, wish.part);
    if (isTooMuchToPaint(part.size()))
        return {.image = {}, .problem = ContentProblem::TooLarge};
    QPdfDocumentRenderOptions options;
    if (part.size() != whole) {
        options.setScaledSize(whole);
        options.setScaledClipRect(part);
    }
    const auto page = pages_.render(wish.index, part.size(), options);
    return page.isNull() ? Picture() : Picture{.image = onPaper(page), .problem = {}};
}

} // namespace tessel::qt
