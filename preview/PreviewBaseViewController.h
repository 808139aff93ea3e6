#pragma once

#include "platform/cloud/ProgressService.h"
#include "platform/ui/Geometry.h"
#include "platform/ui/ViewController.h"
#include "platform/ui/layout/LayoutConstraint.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tessel {

class BarButtonItem;
class Button;
class PreviewItemManager;
class ScrollView;

/// The base of the previews that the program draws itself: a frame that scrolls between the bars, the buttons of a
/// preview, and how far the download of the document is. Main thread only.
class PreviewBaseViewController : public ViewController, public ProgressObserver {
public:
    PreviewBaseViewController() { extendsUnderBars = true; }

    [[nodiscard]] std::string className() const override { return "PreviewBaseViewController"; }

    /// Of the progress; null while nobody listens to it.
    std::shared_ptr<ProgressService::Subscriber> subscriber;
    std::shared_ptr<BarButtonItem> barButtonActionItem;
    std::shared_ptr<BarButtonItem> barButtonDeleteItem;
    std::shared_ptr<BarButtonItem> barButtonMoveItem;
    /// Pin the wrapper to the content.
    std::shared_ptr<LayoutConstraint> parentLeadingConstraint;
    std::shared_ptr<LayoutConstraint> parentTrailingConstraint;
    std::shared_ptr<LayoutConstraint> parentTopConstraint;
    std::shared_ptr<LayoutConstraint> parentBottomConstraint;
    std::int32_t lastProgressChunk = -1; ///< the last twentieth that was logged; -1 for none
    std::shared_ptr<View> wrapperView;   ///< holds what a subclass shows
    std::weak_ptr<PreviewItemManager> itemManager;
    std::int32_t mode = 0; ///< as the manager's
    std::shared_ptr<ScrollView> scrollView;
    std::shared_ptr<View> contentView; ///< all that the scroll view holds

    /// Again on each appearance; nothing outside a stack.
    virtual void setupConstraints();
    /// What the bars cover.
    [[nodiscard]] virtual EdgeInsets scrollViewDefaultEdgeInsets() const;
    virtual void configureMargins();
    /// How the screen is held, as InterfaceOrientation counts; portrait wherever there is little width and no lack of
    /// height.
    [[nodiscard]] virtual std::int32_t currentPseudoOrientation() const;
    /// The item is another one now.
    virtual void refreshItem();

    /// Listens to the progress of work on the item's file, for a subclass that shows it, until the view disappears or
    /// the work is done.
    virtual void registerForProgress();
    virtual void unregisterProgress();
    void observeValueForKeyPath(std::string_view keyPath, const std::shared_ptr<Progress>& ofObject) override;
    /// The work has come further: for a subclass that shows it.
    virtual void updateProgress(const std::shared_ptr<Progress>&) {}

    virtual void configureButtons();
    /// A button that opens the document in its application; null for none.
    [[nodiscard]] virtual std::shared_ptr<Button> openInAppNavControllerButton() { return nullptr; }
    virtual void openInDefaultApp();
    virtual void showWarningAndDeleteDocument();
    virtual void showDocumentActivities();
    virtual void showMoveTarget();

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(Animated) override;
    void viewWillDisappear(Animated) override;
    void viewWillLayoutSubviews() override;

    /// The work on the file has ended, and the subscription with it.
    virtual void progressWasWithdrawn(Progress&);

    using Action = void (PreviewBaseViewController::*)();
    /// Does nothing once the controller is gone.
    [[nodiscard]] std::function<void()> actionOf(Action) const;

private:
    void enableButtons();
    void placeButtons(const std::shared_ptr<BarButtonItem>& openIn);
    ProgressService::WithdrawalHandler progressWasPublished(const std::shared_ptr<Progress>&);

    LayoutConstraint::List constraints_; ///< those of the last setup
};

} // namespace tessel
