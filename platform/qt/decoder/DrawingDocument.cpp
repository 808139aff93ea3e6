#include "platform/qt/decoder/DrawingDocument.h"

#include "platform/qt/decoder/HarmlessDrawing.h"

#include <QPainter>

namespace tessel::qt {

namespace {

constexpr qint64 kMostBytes = 4LL * 1024 * 1024;

} // namespace

DrawingDocument::DrawingDocument(QFile& file)
{
    if (file.size() > kMostBytes)
        problem_ = ContentProblem::TooLarge;
    else if (!renderer_.load(harmlessDrawing(file.readAll())) || renderer_.defaultSize().isEmpty())
        problem_ = ContentProblem::Damaged;
}

ContentFacts DrawingDocument::facts()
{
    ContentFacts facts{.kind = ContentKind::Image, .problem = problem_, .size = {}};
    if (problem_)
        return facts;
    facts.size = {double(renderer_.defaultSize().width()), double(renderer_.defaultSize().height())};
    facts.count = 1;
    return facts;
}

OpenDocument::Picture DrawingDocument::paint(const Wish& wish)
{
    if (problem_)
        return {.image = {}, .problem = *problem_};
    const auto whole = renderer_.defaultSize().scaled(wish.box, Qt::KeepAspectRatio).expandedTo({1, 1});
    const auto part = partOf(whole, wish.part);
    if (isTooMuchToPaint(part.size()))
        return {.image = {}, .problem = ContentProblem::TooLarge};
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer_.render(&painter, QRectF(-part.topLeft(), QSizeF(whole)));
    return {.image = image, .problem = {}};
}

} // namespace tessel::qt
