#include "platform/ui/ViewController.h"

#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TextField.h"

#include <utility>

namespace tessel {

void ViewController::present(std::shared_ptr<ViewController> controller, Animated animated, std::function<void()> shown)
{
    if (const auto presenter = container())
        return presenter->present(std::move(controller), animated, std::move(shown));
    if (controller->presentingViewController())
        return;
    controller->view();
    replacePresented(controller, animated, std::move(shown));
}

void ViewController::dismiss(Animated animated)
{
    if (presented_)
        return replacePresented(nullptr, animated, {});
    const auto outer = presenting_.lock();
    if (const auto next = outer ? outer : container())
        next->dismiss(animated);
}

/// Everything is in its new place before anybody is told, so that whoever is told may present and dismiss again.
void ViewController::replacePresented(const std::shared_ptr<ViewController>& controller, Animated animated,
                                      std::function<void()> shown)
{
    const auto self = shared_from_this();
    const bool wasCovered = isCovered();
    const auto gone = takePresented();
    presented_ = controller;
    if (controller)
        controller->presenting_ = self;
    DispatchQueue::main().async([self, gone, change = ++presentations_, told = std::move(shown)] {
        self->endPresentation(gone, change, told);
    });
    platform::installed().device.tellScreenChanged();

    for (const auto& one : gone) {
        one->beginDisappearing(animated);
        one->wasDismissed();
    }
    if (isCovered() && !wasCovered)
        beginDisappearing(animated);
    else if (!isCovered() && wasCovered)
        beginAppearing(animated);
    if (controller && presented_ == controller)
        controller->beginAppearing(animated);
}

/// Only the last of several changes tells what is on screen; the others may have been undone.
void ViewController::endPresentation(const Controllers& gone, std::size_t change, const std::function<void()>& shown)
{
    for (const auto& one : gone)
        one->endDisappearing();
    if (change != presentations_)
        return;
    endDisappearing();
    endAppearing();
    if (const auto controller = presented_)
        controller->endAppearing();
    if (shown && change == presentations_)
        shown();
}

/// Lets go of what is presented and of what that presents, the uppermost first.
ViewController::Controllers ViewController::takePresented()
{
    const auto presented = std::exchange(presented_, nullptr);
    if (!presented)
        return {};
    auto taken = presented->takePresented();
    presented->presenting_.reset();
    taken.push_back(presented);
    return taken;
}

bool ViewController::isCovered() const
{
    return presented_ && presented_->presentationStyle == PresentationStyle::FullScreen;
}

void ViewController::beginAppearing(Animated animated)
{
    if (appearance_ == Appearance::Off || appearance_ == Appearance::Disappearing) {
        appearance_ = Appearance::Appearing;
        view();
        viewWillAppear(animated);
    }
    for (const auto& controller : shownWithin())
        controller->beginAppearing(animated);
}

void ViewController::endAppearing()
{
    if (appearance_ == Appearance::Appearing) {
        appearance_ = Appearance::On;
        viewDidAppear();
    }
    for (const auto& controller : shownWithin())
        controller->endAppearing();
}

void ViewController::beginDisappearing(Animated animated)
{
    if (appearance_ == Appearance::Appearing || appearance_ == Appearance::On) {
        appearance_ = Appearance::Disappearing;
        viewWillDisappear(animated);
    }
    for (const auto& controller : shownWithin())
        controller->beginDisappearing(animated);
    const auto field = platform::installed().device.firstResponder();
    if (field && view_ && field->isDescendantOf(*view_))
        field->endEditing();
}

void ViewController::endDisappearing()
{
    if (appearance_ == Appearance::Disappearing) {
        appearance_ = Appearance::Off;
        viewDidDisappear();
    }
    for (const auto& controller : shownWithin())
        controller->endDisappearing();
}

} // namespace tessel
