#include "platform/ui/AlertController.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <utility>

namespace tessel {

void AlertAction::setEnabled(bool enabled)
{
    if (std::exchange(enabled_, enabled) == enabled)
        return;
    if (changed)
        changed();
    platform::installed().device.tellScreenChanged();
}

AlertController::AlertController(Style style, std::string title, std::string message)
    : style_(style), message_(std::move(message))
{
    setTitle(std::move(title));
    presentationStyle = style == Style::Alert ? PresentationStyle::OverCurrentContext : PresentationStyle::Popover;
}

void AlertController::addAction(std::shared_ptr<AlertAction> action)
{
    actions_.push_back(std::move(action));
    platform::installed().device.tellScreenChanged();
}

void AlertController::addTextField(const std::function<void(TextField&)>& configure)
{
    const auto field = std::make_shared<TextField>();
    configure(*field);
    textFields_.push_back(field);
    platform::installed().device.tellScreenChanged();
}

void AlertController::setContentViewController(std::shared_ptr<ViewController> content)
{
    content_ = std::move(content);
    platform::installed().device.tellScreenChanged();
}

bool AlertController::choose(const std::shared_ptr<AlertAction>& chosen)
{
    const auto self = shared_from_this();
    const auto found = std::ranges::find(actions_, chosen);
    if (!presentingViewController() || found == actions_.end() || !(*found)->enabled())
        return false;
    const auto action = *found; // kept: whoever is asked may change the actions
    if (const auto mayDismiss = action->shouldDismiss; mayDismiss && !mayDismiss())
        return false;
    const auto presenting = presentingViewController();
    if (!presenting) // the question just asked has ended it in another way
        return false;
    presenting->dismiss(Animated::Yes);
    if (const auto handler = action->handler_)
        handler(action);
    return true;
}

bool AlertController::cancel()
{
    const auto action = std::ranges::find(actions_, AlertAction::Style::Cancel, &AlertAction::style);
    return action != actions_.end() && choose(*action);
}

void AlertController::viewDidAppear()
{
    if (!textFields_.empty())
        textFields_.front()->becomeFirstResponder();
}

void AlertController::viewWillDisappear(Animated)
{
    const auto fields = textFields_;
    for (const auto& field : fields)
        field->endEditing();
}

std::vector<std::shared_ptr<ViewController>> AlertController::shownWithin() const
{
    return content_ ? std::vector{content_} : std::vector<std::shared_ptr<ViewController>>{};
}

} // namespace tessel
