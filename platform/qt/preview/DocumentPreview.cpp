#include "platform/qt/preview/DocumentPreview.h"

#include "platform/base/Platform.h"
#include "platform/documents/PreviewController.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

#include <QFontDatabase>
#include <QLocale>

namespace tessel::qt {

namespace {

DocumentPreview::Kind kindOf(ContentKind kind)
{
    switch (kind) {
    case ContentKind::Text:
        return DocumentPreview::Text;
    case ContentKind::Image:
        return DocumentPreview::Image;
    case ContentKind::Pages:
        return DocumentPreview::Pages;
    case ContentKind::Audio:
        return DocumentPreview::Audio;
    case ContentKind::Video:
        return DocumentPreview::Video;
    default:
        return DocumentPreview::Nothing;
    }
}

} // namespace

DocumentPreview::DocumentPreview(const std::shared_ptr<PreviewController>& controller, QObject* parent)
    : QObject(parent), controller_(controller), rows_(new TextRowList(this))
{
    sync();
}

void DocumentPreview::sync()
{
    const auto controller = controller_.lock();
    const bool hasLeft = controller && !controller->isVisible() && controller->state() == PreviewState::Looking;
    if (!controller || (hasLeft && url_))
        return;
    const auto isSameDocument = url_ == controller->currentPreviewItem();
    assign(state_, static_cast<State>(controller->state()));
    assign(name_, QString::fromStdString(controller->name()));
    assign(detail_, QString::fromStdString(controller->detail()));
    assign(icon_, imageSource(controller->icon(), false));
    assign(button_, QString::fromStdString(controller->buttonTitle()));
    assign(fraction_, controller->fraction());
    assign(url_, controller->currentPreviewItem());
    if (state_ == Shown)
        syncContent(*controller);
    if (const auto& text = controller->content().text; text != rows_->text())
        rows_->show(text, isSameDocument && text);
    rows_->follow();
    if (std::exchange(hasChanged_, false))
        emit changed();
}

void DocumentPreview::syncContent(const PreviewController& controller)
{
    const auto& facts = controller.content().facts;
    assign(kind_, kindOf(facts.kind));
    assign(size_, QSizeF(facts.size.width, facts.size.height));
    assign(count_, facts.count);
    assign(reading_, controller.reading());
}

QString DocumentPreview::fixedFont() const
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

void DocumentPreview::pressButton()
{
    if (const auto controller = controller_.lock())
        controller->pressButton();
}

double DocumentPreview::place() const
{
    const auto controller = controllerShowingThis();
    return controller ? controller->place() : 0;
}

void DocumentPreview::setPlace(double place) const
{
    if (const auto controller = controllerShowingThis())
        controller->setPlace(place);
}

std::shared_ptr<PreviewController> DocumentPreview::controllerShowingThis() const
{
    auto controller = controller_.lock();
    const bool isShown = controller && controller->isVisible() && controller->state() == PreviewState::Shown;
    return isShown && controller->currentPreviewItem() == url_ ? controller : nullptr;
}

QString DocumentPreview::pageText(int index) const
{
    const QLocale locale;
    return QString::fromStdString(
        filledText(platform::installed().text.localized("Page %@ of %@"),
                   {locale.toString(index + 1).toStdString(), locale.toString(count_).toStdString()}));
}

/// One page of many may be damaged, and the others are shown all the same.
void DocumentPreview::pictureHasProblem(int index, ContentProblem problem)
{
    const auto controller = controller_.lock();
    const bool isWhole = problem == ContentProblem::Gone || kind_ == Image;
    if (controller && isWhole && index < count_)
        controller->contentHasProblem(problem);
}

void DocumentPreview::playerHasProblem(ContentProblem problem)
{
    if (const auto controller = controller_.lock())
        controller->contentHasProblem(problem);
}

} // namespace tessel::qt
