#include "platform/ui/ViewController.h"

#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/TextField.h"

#include <utility>

namespace tessel {

ViewController::~ViewController()
{
    if (view_)
        view_->willLayoutSubviews_ = nullptr;
}

View& ViewController::view()
{
    if (!view_) {
        view_ = loadView();
        view_->willLayoutSubviews_ = [this] { viewWillLayoutSubviews(); };
        viewDidLoad();
    }
    return *view_;
}

void ViewController::setTitle(std::string title)
{
    title_ = std::move(title);
    navigationItem.setTitle(title_);
}

void ViewController::setToolbarItems(BarButtonItems items)
{
    toolbarItems_ = std::move(items);
    platform::installed().device.tellScreenChanged();
}

void ViewController::addChild(const std::shared_ptr<ViewController>& child)
{
    child->parent_ = weak_from_this();
    children_.push_back(child);
    view().addSubview(child->view().shared_from_this());
    if (appearance_ != Appearance::On && appearance_ != Appearance::Appearing)
        return;
    child->beginAppearing(Animated::No);
    if (appearance_ == Appearance::On)
        child->endAppearing();
}

void ViewController::layoutView(const Rect& frame)
{
    const auto self = shared_from_this();
    const auto before = view().bounds();
    if ((before.width > 0 || before.height > 0) && (before.width != frame.width || before.height != frame.height))
        viewWillTransitionToSize({frame.width, frame.height});
    view_->setFrame(frame);
    view_->layoutIfNeeded();
}

std::shared_ptr<NavigationController> ViewController::navigationController() const
{
    const auto parent = parent_.lock();
    return parent ? parent->navigationController() : navigation_.lock();
}

std::shared_ptr<ViewController> ViewController::container() const
{
    const auto parent = parent_.lock();
    return parent ? parent : navigation_.lock();
}

void ViewController::releaseLater(std::shared_ptr<ViewController> controller)
{
    DispatchQueue::main().async([held = std::move(controller)] {});
}

} // namespace tessel
