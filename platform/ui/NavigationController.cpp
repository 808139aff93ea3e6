#include "platform/ui/NavigationController.h"

#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel {

namespace {

constexpr double kBarHeight = 44;
constexpr double kTallestBar = 64;
constexpr double kPadding = 10; ///< above and below the text of a bar

double barHeightFor(TextStyle style)
{
    const auto line = platform::installed().device.textMeasurer().metrics(Font::preferred(style)).lineHeight;
    return std::clamp(std::ceil(line + 2 * kPadding), kBarHeight, kTallestBar);
}

/// Whether the bars beneath can still be reached: such as beneath a search.
bool leavesBars(const ViewController& presented)
{
    return presented.presentationStyle == PresentationStyle::OverCurrentContext &&
           !dynamic_cast<const AlertController*>(&presented);
}

} // namespace

std::shared_ptr<ViewController> NavigationController::topViewController() const
{
    return stack_.empty() ? nullptr : stack_.back();
}

void NavigationController::setViewControllers(Stack stack, Animated animated)
{
    const auto self = std::static_pointer_cast<NavigationController>(shared_from_this());
    const auto before = std::exchange(stack_, std::move(stack));
    for (const auto& controller : before) {
        if (std::ranges::find(stack_, controller) != stack_.end())
            continue;
        if (controller->navigation_.lock() == self)
            controller->navigation_.reset();
        releaseLater(controller);
    }
    for (const auto& controller : stack_)
        controller->navigation_ = self;
    scheduleShow(animated);
    platform::installed().device.tellScreenChanged();
}

void NavigationController::pushViewController(std::shared_ptr<ViewController> controller, Animated animated)
{
    auto stack = stack_;
    stack.push_back(std::move(controller));
    setViewControllers(std::move(stack), animated);
}

void NavigationController::popViewController(Animated animated)
{
    if (stack_.size() > 1)
        setViewControllers({stack_.begin(), stack_.end() - 1}, animated);
}

void NavigationController::popToRootViewController(Animated animated)
{
    if (stack_.size() > 1)
        setViewControllers({stack_.front()}, animated);
}

std::shared_ptr<ViewController> NavigationController::visibleViewController() const
{
    if (!presentedViewController())
        return topViewController();
    auto visible = presentedViewController();
    while (visible->presentedViewController())
        visible = visible->presentedViewController();
    return visible;
}

double NavigationController::navigationBarHeight()
{
    return barHeightFor(TextStyle::Headline);
}

double NavigationController::toolbarHeight()
{
    return barHeightFor(TextStyle::Body);
}

std::shared_ptr<ViewController> NavigationController::backTarget() const
{
    if (stack_.size() < 2)
        return nullptr;
    const auto& item = stack_.back()->navigationItem;
    const bool isReplaced = !item.leftItems().empty() && !item.leftItemsSupplementBackButton();
    return item.hidesBackButton() || isReplaced ? nullptr : stack_[stack_.size() - 2];
}

bool NavigationController::pressBack()
{
    if (!backTarget())
        return false;
    for (auto over = presentedViewController(); over; over = over->presentedViewController())
        if (!leavesBars(*over))
            return false;
    if (presentedViewController())
        dismiss(Animated::No);
    popViewController(Animated::Yes);
    return true;
}

void NavigationController::setToolbarHidden(bool hidden)
{
    if (std::exchange(toolbarHidden_, hidden) != hidden)
        platform::installed().device.tellScreenChanged();
}

NavigationController::Stack NavigationController::shownWithin() const
{
    return shown_ ? Stack{shown_} : Stack{};
}

void NavigationController::beginAppearing(Animated animated)
{
    hasLeftScreen_ = false;
    ViewController::beginAppearing(animated);
}

void NavigationController::beginDisappearing(Animated animated)
{
    hasLeftScreen_ = true;
    ViewController::beginDisappearing(animated);
}

void NavigationController::scheduleShow(Animated animated)
{
    lastAnimation_ = animated;
    if (std::exchange(showScheduled_, true))
        return;
    DispatchQueue::main().async([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            static_cast<NavigationController&>(*self).show();
    });
}

void NavigationController::show()
{
    showScheduled_ = false;
    const auto top = topViewController();
    const auto before = std::exchange(shown_, top);
    const bool isOther = before != top && !hasLeftScreen_;
    if (before && isOther)
        before->beginDisappearing(lastAnimation_);
    if (top)
        top->view();
    if (top && isOther)
        top->beginAppearing(lastAnimation_);
    if (before && isOther)
        before->endDisappearing();
    if (top && delegate)
        delegate->navigationControllerDidShowViewController(*this, top, lastAnimation_);
    if (top && isOther)
        top->endAppearing();
}

} // namespace tessel
