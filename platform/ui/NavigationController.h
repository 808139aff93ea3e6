#pragma once

#include "platform/ui/ViewController.h"

#include <memory>
#include <vector>

namespace tessel {

class NavigationControllerDelegate {
public:
    virtual ~NavigationControllerDelegate() = default;

    /// A push, pop or replacement has finished, and `shown` is on screen. Told on the main queue, once for all the
    /// changes of one task; it may change the stack again.
    /// @param animated whether the last of the changes was
    virtual void navigationControllerDidShowViewController(NavigationController&,
                                                           const std::shared_ptr<ViewController>& shown,
                                                           Animated animated) = 0;
};

/// A stack of controllers of which the top one is on screen, with a navigation bar and a toolbar.
class NavigationController : public ViewController {
public:
    using Stack = std::vector<std::shared_ptr<ViewController>>;

    [[nodiscard]] std::string className() const override { return "NavigationController"; }

    [[nodiscard]] const Stack& viewControllers() const { return stack_; }
    /// Null while the stack is empty.
    [[nodiscard]] std::shared_ptr<ViewController> topViewController() const;

    /// Takes effect at once; the new top controller's view is loaded before the delegate is told.
    void setViewControllers(Stack, Animated);
    void pushViewController(std::shared_ptr<ViewController>, Animated);
    /// Nothing when only the root is left.
    void popViewController(Animated);
    void popToRootViewController(Animated);

    /// Where the back button leads: the controller below the top one; null when there is no button.
    [[nodiscard]] std::shared_ptr<ViewController> backTarget() const;
    /// Presses the back button, as the user does: ends what is presented, such as a search, and pops.
    /// @returns whether there was a button to press.
    bool pressBack();

    bool toolbarHidden = true;
    NavigationControllerDelegate* delegate = nullptr; ///< lives as long as the controller does

private:
    void scheduleShow(Animated);
    void show();

    Stack stack_;
    bool showScheduled_ = false;
    Animated lastAnimation_ = Animated::No;
};

} // namespace tessel
