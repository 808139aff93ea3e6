#pragma once

#include "platform/ui/ViewController.h"

#include <memory>
#include <vector>

namespace tessel {

class NavigationControllerDelegate {
public:
    virtual ~NavigationControllerDelegate() = default;

    /// A push, pop or replacement has finished, and `shown` is on screen.
    virtual void navigationControllerDidShowViewController(NavigationController&,
                                                           const std::shared_ptr<ViewController>& shown, Animated)
    {
        (void)shown;
    }
};

/// A stack of controllers of which the top one is on screen, with a navigation bar and a toolbar.
class NavigationController : public ViewController {
public:
    using Stack = std::vector<std::shared_ptr<ViewController>>;

    [[nodiscard]] std::string className() const override { return "NavigationController"; }

    [[nodiscard]] const Stack& viewControllers() const { return stack_; }
    [[nodiscard]] std::shared_ptr<ViewController> topViewController() const;

    void setViewControllers(Stack, Animated);
    void pushViewController(std::shared_ptr<ViewController>, Animated);
    /// Nothing when only the root is left.
    void popViewController(Animated);
    void popToRootViewController(Animated);

    /// Presses the back button, as the user does: pops, unless the top controller hides the button.
    /// @returns whether there was a button to press.
    bool pressBack();

    bool toolbarHidden = true;
    NavigationControllerDelegate* delegate = nullptr; ///< lives as long as the controller does

private:
    void stackChanged(Animated);

    Stack stack_;
    bool showScheduled_ = false;
    Animated lastAnimation_ = Animated::No;
};

} // namespace tessel
