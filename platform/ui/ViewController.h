#pragma once

#include "platform/ui/View.h"

#include <memory>
#include <string>

namespace tessel {

class NavigationController;
class StateCoder;

enum class Animated { No, Yes };

/// What a controller shows in the navigation bar while it is on top.
struct NavigationItem {
    std::string title; ///< UTF-8
    bool hidesBackButton = false;
};

/// Controls one screen or part of it. Made as a shared pointer; main thread only.
///
/// A controller may leave the screen from inside one of its own operations: whoever let go of it keeps it alive until
/// the main queue's next task.
class ViewController : public std::enable_shared_from_this<ViewController> {
public:
    ViewController() = default;
    virtual ~ViewController() = default;
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;

    /// The class's own name, for the log.
    [[nodiscard]] virtual std::string className() const = 0;
    [[nodiscard]] virtual std::string description() const { return "<" + className() + ">"; }

    /// The view, loaded by the first call.
    View& view();

    [[nodiscard]] const std::string& title() const { return title_; }
    /// Also sets the navigation item's title.
    void setTitle(std::string title);

    NavigationItem navigationItem;
    std::string restorationIdentifier; ///< empty: the state is not restored

    /// The stack that this controller is on, if any.
    [[nodiscard]] std::shared_ptr<NavigationController> navigationController() const;

    /// What is shown over this controller and its children; at most one.
    [[nodiscard]] const std::shared_ptr<ViewController>& presentedViewController() const { return presented_; }
    /// Replaces what was presented; the same controller again changes nothing.
    void present(std::shared_ptr<ViewController>, Animated);
    /// Ends what this controller presents, and what that presents in turn; nothing without it.
    void dismiss(Animated);

    /// State restoration; an override calls its base first.
    virtual void encodeRestorableState(StateCoder&) const {}
    virtual void decodeRestorableState(const StateCoder&) {}

protected:
    /// Runs once, after the view was made and before it is first shown.
    virtual void viewDidLoad() {}
    /// This controller is the top one of its stack and on screen.
    virtual void viewDidAppear() {}
    /// This controller, which another one presented, is no longer shown.
    virtual void wasDismissed() {}

    /// Lets go of a controller in a task of its own, so that its running operations can return.
    static void releaseLater(std::shared_ptr<ViewController>);

private:
    friend class NavigationController;

    void replacePresented(std::shared_ptr<ViewController>);

    std::unique_ptr<View> view_;
    std::string title_;
    std::weak_ptr<NavigationController> navigation_;
    std::shared_ptr<ViewController> presented_;
};

} // namespace tessel
