#pragma once

#include "platform/ui/NavigationItem.h"
#include "platform/ui/Presentation.h"
#include "platform/ui/View.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class NavigationController;
class StateCoder;

enum class Animated { No, Yes };

/// Controls one screen or part of it. Made as a shared pointer; main thread only.
///
/// A controller may leave the screen from inside one of its own operations: whoever let go of it keeps it alive until
/// the main queue's next task.
class ViewController : public std::enable_shared_from_this<ViewController> {
public:
    ViewController() = default;
    virtual ~ViewController();
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;

    /// The class's own name, for the log.
    [[nodiscard]] virtual std::string className() const = 0;
    [[nodiscard]] virtual std::string description() const { return "<" + className() + ">"; }

    /// The view, loaded by the first call.
    View& view();
    [[nodiscard]] bool isViewLoaded() const { return view_ != nullptr; }

    [[nodiscard]] const std::string& title() const { return title_; }
    /// Also sets the navigation item's title.
    void setTitle(std::string title);

    NavigationItem navigationItem;
    /// Shown in the stack's toolbar while this controller is on top.
    [[nodiscard]] const BarButtonItems& toolbarItems() const { return toolbarItems_; }
    void setToolbarItems(BarButtonItems);

    std::string restorationIdentifier; ///< empty: the state is not restored
    /// Whether the view lies under the bars of the stack as well; else between them.
    bool extendsUnderBars = false;

    /// The stack that this controller is on, or the one that it is a child of; null without.
    [[nodiscard]] std::shared_ptr<NavigationController> navigationController() const;

    /// How this controller is shown when another one presents it, and where a popover points.
    PresentationStyle presentationStyle = PresentationStyle::FullScreen;
    PopoverAnchor popoverAnchor;

    /// What is shown over this controller and its children; at most one. A controller on a stack, and a child, have the
    /// stack and the parent present in their place.
    [[nodiscard]] const std::shared_ptr<ViewController>& presentedViewController() const { return presented_; }
    [[nodiscard]] std::shared_ptr<ViewController> presentingViewController() const { return presenting_.lock(); }
    /// Replaces what was presented; the same controller again changes nothing. One that is presented elsewhere is not
    /// presented a second time. What lies beneath a full screen has left the screen.
    /// @param shown called on the main queue when it is on screen; not if it never came there
    void present(std::shared_ptr<ViewController>, Animated, std::function<void()> shown = {});
    /// Ends what this controller presents, and what that presents in turn; a controller that presents nothing ends
    /// itself, if it is presented.
    void dismiss(Animated);

    /// Controllers whose views are parts of this one's.
    [[nodiscard]] const std::vector<std::shared_ptr<ViewController>>& children() const { return children_; }
    /// Adopts the controller and puts its view into this one's.
    void addChild(const std::shared_ptr<ViewController>&);

    /// The shell calls this before it shows the view in a size: lays out the view and what is below it. Another size
    /// than the one before is told first.
    void layoutView(const Rect& frame);

    /// State restoration; an override calls its base first.
    virtual void encodeRestorableState(StateCoder&) const {}
    virtual void decodeRestorableState(const StateCoder&) {}

protected:
    /// Makes the view; an override that wants more than a plain one makes it here.
    [[nodiscard]] virtual std::shared_ptr<View> loadView() { return std::make_shared<View>(); }
    /// Runs once, after the view was made and before it is first shown.
    virtual void viewDidLoad() {}
    /// Before each time that the view comes on screen, and after it has; and the same when it leaves. When one view
    /// takes the place of another, the other one is told first, both before and after.
    virtual void viewWillAppear(Animated) {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear(Animated) {}
    virtual void viewDidDisappear() {}
    /// The view, which has been shown in a size, gets another one.
    virtual void viewWillTransitionToSize(const Size&) {}
    /// The view has another size, or needs to be laid out for another reason.
    virtual void viewWillLayoutSubviews() {}
    /// This controller, which another one presented, is no longer shown.
    virtual void wasDismissed() {}

    /// Lets go of a controller in a task of its own, so that its running operations can return.
    static void releaseLater(std::shared_ptr<ViewController>);

private:
    friend class AlertController;
    friend class NavigationController;
    friend class Window;

    using Controllers = std::vector<std::shared_ptr<ViewController>>;
    enum class Appearance { Off, Appearing, On, Disappearing };

    /// Those that come and go with this one.
    [[nodiscard]] virtual Controllers shownWithin() const { return children_; }
    virtual void beginAppearing(Animated);
    virtual void beginDisappearing(Animated);
    void endAppearing();
    void endDisappearing();

    [[nodiscard]] std::shared_ptr<ViewController> container() const;
    [[nodiscard]] bool isCovered() const;
    void replacePresented(const std::shared_ptr<ViewController>&, Animated, std::function<void()> shown);
    void endPresentation(const Controllers& gone, std::size_t change, const std::function<void()>& shown);
    [[nodiscard]] Controllers takePresented();

    std::shared_ptr<View> view_;
    std::string title_;
    BarButtonItems toolbarItems_;
    Appearance appearance_ = Appearance::Off;
    Controllers children_;
    std::weak_ptr<ViewController> parent_;
    std::weak_ptr<ViewController> presenting_;
    std::weak_ptr<NavigationController> navigation_;
    std::shared_ptr<ViewController> presented_;
    std::size_t presentations_ = 0; ///< how often `presented_` has changed
};

} // namespace tessel
