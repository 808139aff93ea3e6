#include "platform/qt/Layer.h"

#include "platform/base/Platform.h"
#include "platform/documents/PeekController.h"
#include "platform/qt/AlertButton.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"

#include <algorithm>

namespace tessel::qt {

namespace {

constexpr double kPopoverWidth = 375;
constexpr double kPopoverMargin = 16;   ///< to the window's edges
constexpr double kPopoverHeight = 400;  ///< of one that has no size of its own
constexpr double kTallestPopover = 0.8; ///< of the window
constexpr double kWidestPeek = 480;
constexpr double kTallestPeek = 640;

/// The height that a view takes in this width; `otherwise` when it has none of its own.
double heightOf(const View& view, double width, double most, double otherwise)
{
    const auto height = view.sizeThatFits({width, most}).height;
    return std::min(height > 0 ? height : otherwise, most);
}

} // namespace

Layer::Layer(const std::shared_ptr<ViewController>& controller, bool dark, QObject* parent)
    : Presence(controller, parent), views_(dark)
{
    if (navigation())
        pages_ = new PageStack(dark, this);
}

QString Layer::kind() const
{
    if (const auto alert = this->alert())
        return alert->style() == AlertController::Style::Alert ? QStringLiteral("alert") : QStringLiteral("sheet");
    switch (controller()->presentationStyle) {
    case PresentationStyle::Popover:
        return QStringLiteral("popover");
    case PresentationStyle::Peek:
        return QStringLiteral("peek");
    case PresentationStyle::FullScreen:
    case PresentationStyle::OverCurrentContext:
        break;
    }
    return QStringLiteral("views");
}

QString Layer::message() const
{
    const auto alert = this->alert();
    return alert ? QString::fromStdString(alert->message()) : QString();
}

Node* Layer::content()
{
    const auto alert = this->alert();
    const auto content = alert ? alert->contentViewController() : nullptr;
    return content ? views_.nodeFor(content->view().shared_from_this()) : nullptr;
}

Node* Layer::root()
{
    return alert() || pages_ ? nullptr : views_.nodeFor(controller()->view().shared_from_this());
}

bool Layer::isOverContext() const
{
    return controller()->presentationStyle == PresentationStyle::OverCurrentContext;
}

bool Layer::anchorLeftOrRight() const
{
    return controller()->popoverAnchor.onlyLeftOrRight;
}

bool Layer::coversWindow() const
{
    return !alert() && controller()->presentationStyle == PresentationStyle::FullScreen;
}

std::shared_ptr<NavigationController> Layer::navigation() const
{
    return std::dynamic_pointer_cast<NavigationController>(controller());
}

std::shared_ptr<AlertController> Layer::alert() const
{
    return std::dynamic_pointer_cast<AlertController>(controller());
}

void Layer::sync(BarItems& items)
{
    if (const auto title = QString::fromStdString(controller()->title()); title != title_) {
        title_ = title;
        emit titleChanged();
    }
    if (const auto alert = this->alert())
        syncAlert(alert);
    if (pages_)
        pages_->sync(navigation().get(), items);
}

void Layer::setAnchor(const QRectF& anchor)
{
    if (anchor == anchor_)
        return;
    anchor_ = anchor;
    emit anchorChanged();
}

void Layer::setContentWidth(double width)
{
    if (width <= 0 || width == contentWidth_)
        return;
    contentWidth_ = width;
    emit contentWidthChanged();
    platform::installed().device.tellScreenChanged();
}

void Layer::syncAlert(const std::shared_ptr<AlertController>& alert)
{
    const auto& actions = alert->actions();
    const auto hasButton = [](const std::shared_ptr<AlertAction>& action, const QVariant& button) {
        return button.value<AlertButton*>()->action() == action;
    };
    if (!std::ranges::equal(actions, actions_, hasButton)) {
        for (const auto& button : std::as_const(actions_))
            button.value<AlertButton*>()->deleteLater();
        actions_.clear();
        for (const auto& action : actions)
            actions_.append(QVariant::fromValue(new AlertButton(alert, action, this)));
        emit actionsChanged();
    }
    for (const auto& button : std::as_const(actions_))
        button.value<AlertButton*>()->sync();

    QVariantList fields;
    for (const auto& field : alert->textFields())
        fields.append(QVariant::fromValue(views_.nodeFor(field)));
    if (fields != fields_) {
        fields_ = fields;
        emit fieldsChanged();
    }
}

void Layer::setDark(bool dark)
{
    views_.setDark(dark);
    if (pages_)
        pages_->setDark(dark);
}

void Layer::layOut(const Size& window, bool isTablet) const
{
    if (const auto alert = this->alert()) {
        if (const auto& content = alert->contentViewController())
            content->layoutView({0, 0, contentWidth_, heightOf(content->view(), contentWidth_, window.height, 0)});
        return;
    }
    if (controller()->presentationStyle == PresentationStyle::Peek) {
        const auto card = cardSize(window.width, window.height);
        controller()->layoutView({0, 0, card.width(), card.height()});
        return;
    }
    if (controller()->presentationStyle != PresentationStyle::Popover) {
        controller()->layoutView({0, 0, window.width, window.height});
        return;
    }
    const auto width = isTablet ? std::min(kPopoverWidth, window.width - 2 * kPopoverMargin) : window.width;
    const auto most = window.height * kTallestPopover;
    controller()->layoutView({0, 0, width, heightOf(controller()->view(), width, most, kPopoverHeight)});
}

QSizeF Layer::cardSize(double windowWidth, double windowHeight) const
{
    return {std::min(windowWidth - 2 * kPopoverMargin, kWidestPeek),
            std::min(windowHeight * kTallestPopover, kTallestPeek)};
}

bool Layer::cancel()
{
    const auto controller = this->controller();
    if (phase() == Leaving)
        return false;
    if (const auto alert = this->alert())
        return alert->cancel();
    if (const auto peek = std::dynamic_pointer_cast<PeekController>(controller)) {
        peek->release();
        return true;
    }
    const auto presenting = controller->presentingViewController();
    if (kind() != QStringLiteral("popover") || !presenting)
        return false;
    presenting->dismiss(Animated::Yes);
    return true;
}

void Layer::pop()
{
    const auto peek = std::dynamic_pointer_cast<PeekController>(controller());
    if (peek && phase() != Leaving)
        peek->pop();
}

} // namespace tessel::qt
