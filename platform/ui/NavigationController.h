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

/// A stack of controllers of which the top one is on screen, with a navigation bar and a toolbar. The controllers are
/// told that they come and go in the task that tells the delegate, so of a burst of changes only the last counts.
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

    /// What the user sees of this stack: the top controller, or what is presented over it, the last of all.
    [[nodiscard]] std::shared_ptr<ViewController> visibleViewController() const;

    /// In points, at the user's text size.
    [[nodiscard]] static double navigationBarHeight();
    [[nodiscard]] static double toolbarHeight();

    /// Where the back button leads: the controller below the top one; null when there is no button.
    [[nodiscard]] std::shared_ptr<ViewController> backTarget() const;
    /// Presses the back button, as the user does: ends what is presented, such as a search, and pops.
    /// @returns whether there was a button to press; there is none under an alert or another full cover.
    bool pressBack();

    [[nodiscard]] bool toolbarHidden() const { return toolbarHidden_; }
    void setToolbarHidden(bool);
    /// Whether the last change of the stack was animated: for the shells.
    [[nodiscard]] Animated lastAnimation() const { return lastAnimation_; }
    NavigationControllerDelegate* delegate = nullptr; ///< lives as long as the controller does

private:
    [[nodiscard]] Stack shownWithin() const override;
    void beginAppearing(Animated) override;
    void beginDisappearing(Animated) override;

    void scheduleShow(Animated);
    void show();

    Stack stack_;
    bool toolbarHidden_ = true;
    bool showScheduled_ = false;
    Animated lastAnimation_ = Animated::No;
    std::shared_ptr<ViewController> shown_; ///< the top controller that was last told so
    bool hasLeftScreen_ = false;            ///< covered or dismissed; else the stack counts as on screen
};

} // namespace tessel
