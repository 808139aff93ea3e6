#include "platform/ui/NavigationController.h"

#include "platform/run/MainQueue.h"

#include <algorithm>
#include <utility>

namespace tessel {

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
        controller->navigation_.reset();
        releaseLater(controller);
    }
    for (const auto& controller : stack_)
        controller->navigation_ = self;
    scheduleShow(animated);
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

std::shared_ptr<ViewController> NavigationController::backTarget() const
{
    if (stack_.size() < 2 || stack_.back()->navigationItem.hidesBackButton)
        return nullptr;
    return stack_[stack_.size() - 2];
}

bool NavigationController::pressBack()
{
    if (!backTarget())
        return false;
    dismiss(Animated::No);
    popViewController(Animated::Yes);
    return true;
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
    if (!top)
        return;
    top->view();
    if (delegate)
        delegate->navigationControllerDidShowViewController(*this, top, lastAnimation_);
    top->viewDidAppear();
}

} // namespace tessel
