#include "platform/ui/ViewController.h"

#include "platform/run/MainQueue.h"
#include "platform/ui/NavigationController.h"

#include <utility>

namespace tessel {

View& ViewController::view()
{
    if (!view_) {
        view_ = std::make_unique<View>();
        viewDidLoad();
    }
    return *view_;
}

void ViewController::setTitle(std::string title)
{
    title_ = std::move(title);
    navigationItem.title = title_;
}

std::shared_ptr<NavigationController> ViewController::navigationController() const
{
    return navigation_.lock();
}

void ViewController::present(std::shared_ptr<ViewController> controller, Animated)
{
    if (controller == presented_)
        return;
    controller->view();
    replacePresented(std::move(controller));
}

void ViewController::dismiss(Animated)
{
    replacePresented(nullptr);
}

void ViewController::replacePresented(std::shared_ptr<ViewController> controller)
{
    const auto dismissed = std::exchange(presented_, std::move(controller));
    if (!dismissed)
        return;
    dismissed->replacePresented(nullptr);
    dismissed->wasDismissed();
    releaseLater(dismissed);
}

void ViewController::releaseLater(std::shared_ptr<ViewController> controller)
{
    DispatchQueue::main().async([held = std::move(controller)] {});
}

} // namespace tessel
