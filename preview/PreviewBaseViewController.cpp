#include "preview/PreviewBaseViewController.h"

#include "app/common/Log.h"
#include "files/DRItem.h"
#include "files/UIUtils.h"
#include "platform/base/Platform.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/layout/VisualFormat.h"
#include "preview/PreviewItemManager.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr Rect kFirstFrame = {0, 0, 375, 667};
constexpr double kPortraitBottom = -17;

} // namespace

std::shared_ptr<View> PreviewBaseViewController::loadView()
{
    auto view = ViewController::loadView();
    contentView = std::make_shared<View>(kFirstFrame);
    contentView->layoutIdentifier = "ContentView";
    wrapperView = std::make_shared<View>();
    wrapperView->layoutIdentifier = "WrapperView";
    wrapperView->setLaidOutByConstraints(true);
    scrollView = std::make_shared<ScrollView>();
    scrollView->setLaidOutByConstraints(true);
    scrollView->showsIndicators = false;
    scrollView->bouncesVertically = true;
    view->addSubview(scrollView);
    contentView->addSubview(wrapperView);
    scrollView->addSubview(contentView);
    lastProgressChunk = -1;
    return view;
}

void PreviewBaseViewController::viewDidLoad()
{
    view().setBackgroundColor(Color::white());
}

void PreviewBaseViewController::viewWillAppear(Animated)
{
    configureButtons();
    setupConstraints();
    refreshItem();
}

void PreviewBaseViewController::viewWillDisappear(Animated animated)
{
    unregisterProgress();
    if (const auto manager = itemManager.lock())
        manager->viewControllerWillDisappear(*this);
    ViewController::viewWillDisappear(animated);
}

/// What lies under the bars is left free by the scroll view, which begins at the top of what can be seen.
void PreviewBaseViewController::setupConstraints()
{
    if (!navigationController())
        return;
    view();
    LayoutConstraint::deactivate(std::exchange(constraints_, {}));
    const NamedViews views = {{"scrollView", scrollView.get()}, {"contentView", contentView.get()}};
    for (const auto* format : {"H:|[scrollView]|", "V:|[scrollView]|"}) {
        const auto written = constraintsWithVisualFormat(format, views);
        constraints_.insert(constraints_.end(), written->begin(), written->end());
    }
    parentLeadingConstraint = wrapperView->leadingAnchor().equalTo(contentView->leadingAnchor());
    parentTrailingConstraint = wrapperView->trailingAnchor().equalTo(contentView->trailingAnchor());
    parentTopConstraint = wrapperView->topAnchor().equalTo(contentView->topAnchor());
    parentBottomConstraint = wrapperView->bottomAnchor().equalTo(contentView->bottomAnchor());
    constraints_.insert(constraints_.end(), {parentLeadingConstraint, parentTrailingConstraint, parentTopConstraint,
                                             parentBottomConstraint});
    LayoutConstraint::activate(constraints_);
    configureMargins();
    const auto insets = scrollViewDefaultEdgeInsets();
    scrollView->setContentInset(insets);
    scrollView->setContentOffset({0, -insets.top});
}

EdgeInsets PreviewBaseViewController::scrollViewDefaultEdgeInsets() const
{
    const auto& statusBar = platform::installed().device.statusBarFrame;
    const auto navigation = navigationController();
    EdgeInsets insets;
    insets.top = std::min(statusBar.width, statusBar.height);
    if (navigation)
        insets.top += NavigationController::navigationBarHeight();
    if (navigation && !navigation->toolbarHidden())
        insets.bottom = NavigationController::toolbarHeight();
    return insets;
}

void PreviewBaseViewController::viewWillLayoutSubviews()
{
    ViewController::viewWillLayoutSubviews();
    const auto insets = scrollViewDefaultEdgeInsets();
    auto frame = view().bounds();
    frame.height -= insets.top + insets.bottom;
    contentView->setFrame(frame);
    scrollView->setContentSize({frame.width, frame.height});
    configureMargins();
}

void PreviewBaseViewController::configureMargins()
{
    const auto orientation = static_cast<InterfaceOrientation>(currentPseudoOrientation());
    const bool isPortrait =
        orientation == InterfaceOrientation::Portrait || orientation == InterfaceOrientation::PortraitUpsideDown;
    if (parentBottomConstraint)
        parentBottomConstraint->setConstant(isPortrait ? kPortraitBottom : 0);
}

std::int32_t PreviewBaseViewController::currentPseudoOrientation() const
{
    const auto& device = platform::installed().device;
    const bool isNarrowAndHigh =
        device.horizontalSizeClass() == SizeClass::Compact && device.verticalSizeClass() == SizeClass::Regular;
    return static_cast<std::int32_t>(isNarrowAndHigh ? InterfaceOrientation::Portrait : device.interfaceOrientation());
}

void PreviewBaseViewController::refreshItem()
{
    enableButtons();
    lastProgressChunk = -1;
}

} // namespace tessel
