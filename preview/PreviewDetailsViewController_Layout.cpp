#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "preview/FileInfoStackView.h"
#include "preview/HairlineView.h"
#include "preview/PreviewDetailsViewController.h"
#include "preview/ThumbnailImageView.h"

namespace tessel {

namespace {

using Alignment = StackView::Alignment;

constexpr double kThumbnailHugging = 249;
constexpr double kNameFontSize = 24;
constexpr double kNameHeight = 1.3; ///< lines of the field's first font
constexpr double kNameSpacing = 7;
constexpr double kDetailsSpacing = 15;
constexpr double kSideMargins = 16; ///< of both sides together

void resistCompression(View& view)
{
    for (const auto axis : {LayoutAxis::Horizontal, LayoutAxis::Vertical})
        view.setCompressionResistance(axis, LayoutPriority::kRequired);
}

Font titleFont()
{
    auto font = Font::ofStyle(TextStyle::Title2);
    font.size = kNameFontSize;
    return font;
}

bool isLandscape(std::int32_t orientation)
{
    return orientation == static_cast<std::int32_t>(InterfaceOrientation::LandscapeRight) ||
           orientation == static_cast<std::int32_t>(InterfaceOrientation::LandscapeLeft);
}

} // namespace

void PreviewDetailsViewController::setupViewsAndConstraints()
{
    thumbnailView = std::make_shared<ThumbnailImageView>();
    thumbnailView->setLaidOutByConstraints(true);
    for (const auto axis : {LayoutAxis::Horizontal, LayoutAxis::Vertical})
        thumbnailView->setContentHugging(axis, kThumbnailHugging);
    resistCompression(*thumbnailView);
    fileDetailsView = buildFileDetailsStackView();
    mainStackView = buildVerticalStackWithSubviews({thumbnailView, fileDetailsView}, 0);
    mainStackView->layoutIdentifier = "MainStackView";
    wrapperView->addSubview(mainStackView);
    stretchSubview(*mainStackView, *wrapperView, true);
    setupPortraitConstraints();
    setupLandscapeConstraints();
    adjustViewsForOrientation(currentPseudoOrientation());
}

std::shared_ptr<StackView> PreviewDetailsViewController::buildVerticalStackWithSubviews(const Views& subviews,
                                                                                        double spacing) const
{
    auto stack = std::make_shared<StackView>();
    stack->setAxis(StackView::Axis::Vertical);
    stack->setDistribution(StackView::Distribution::Fill);
    stack->setAlignment(Alignment::Center);
    stack->setLaidOutByConstraints(true);
    stack->setSpacing(spacing);
    stack->setContentHugging(LayoutAxis::Vertical, LayoutPriority::kRequired);
    for (const auto& subview : subviews)
        stack->addArrangedSubview(subview);
    return stack;
}

void PreviewDetailsViewController::stretchSubview(View& subview, View& withinView, bool includeBottom) const
{
    LayoutConstraint::activate(stretchSubviewWidth(subview, withinView));
    subview.topAnchor().equalTo(withinView.topAnchor())->setActive(true);
    if (includeBottom)
        subview.bottomAnchor().equalTo(withinView.bottomAnchor())->setActive(true);
}

LayoutConstraint::List PreviewDetailsViewController::stretchSubviewWidth(View& subview, View& withinView) const
{
    return {subview.centerXAnchor().equalTo(withinView.centerXAnchor()),
            subview.widthAnchor().equalTo(withinView.widthAnchor())};
}

std::shared_ptr<StackView> PreviewDetailsViewController::buildStackViewForFilenameWithHairlines()
{
    const auto above = std::make_shared<HairlineView>();
    const auto below = std::make_shared<HairlineView>();
    makeTextField();
    auto stack = buildVerticalStackWithSubviews({above, filenameTextField, below}, kNameSpacing);
    for (const auto& hairline : {above, below})
        LayoutConstraint::activate(stretchSubviewWidth(*hairline, *stack));
    stack->layoutIdentifier = "FilenameStackView";
    return stack;
}

void PreviewDetailsViewController::makeTextField()
{
    const auto& services = platform::installed();
    filenameTextField = std::make_shared<TextField>();
    filenameTextField->returnKey = TextField::ReturnKey::Done;
    filenameTextField->needsTextForReturn = true;
    filenameTextField->capitals = TextField::Capitals::Words;
    filenameTextField->showsClearButtonWhileEditing = true;
    filenameTextField->hasGround = false;
    filenameTextField->layoutIdentifier = "FilenameTextField";
    filenameTextField->setAccessibilityLabel(services.text.localized("Name"));
    resistCompression(*filenameTextField);
    filenameTextField->setContentHugging(LayoutAxis::Horizontal, 0);
    filenameTextField->delegate = self();
    const auto lineHeight = services.device.textMeasurer().metrics(filenameTextField->font()).lineHeight;
    filenameTextField->heightAnchor().equalTo(kNameHeight * lineHeight)->setActive(true);
    filenameTextField->setFont(titleFont());
}

std::shared_ptr<StackView> PreviewDetailsViewController::buildFileDetailsStackView()
{
    filenameStackView = buildStackViewForFilenameWithHairlines();
    fileInfoView = std::make_shared<FileInfoStackView>();
    fileInfoView->setAxis(StackView::Axis::Vertical);
    Views items = {filenameStackView, fileInfoView};
    if (shouldDisplayOpenInAppButtonInView()) {
        openInAppButton->setTitleFont(titleFont());
        openInAppButton->pressed = actionOf(&PreviewBaseViewController::openInDefaultApp);
        resistCompression(*openInAppButton);
        items.insert(items.end(), {std::make_shared<HairlineView>(), openInAppButton});
    }
    auto stack = buildVerticalStackWithSubviews(items, kDetailsSpacing);
    stack->layoutIdentifier = "FileDetailsView";
    fileDetailsView = stack;
    tieFileDetails();
    return stack;
}

void PreviewDetailsViewController::tieFileDetails()
{
    auto& details = *fileDetailsView;
    filenameTextFieldFullWidthConstraint =
        filenameTextField->widthAnchor().equalTo(filenameStackView->widthAnchor(), -kSideMargins);
    filenameTextFieldFullWidthConstraint->setActive(true);
    LayoutConstraint::activate({filenameTextField->centerXAnchor().equalTo(filenameStackView->centerXAnchor()),
                                fileInfoView->centerXAnchor().equalTo(details.centerXAnchor()),
                                fileInfoView->widthAnchor().atMost(details.widthAnchor(), -kSideMargins)});
    for (const auto& view : details.arrangedSubviews())
        if (view == filenameStackView || std::dynamic_pointer_cast<HairlineView>(view))
            LayoutConstraint::activate(stretchSubviewWidth(*view, details));
}

void PreviewDetailsViewController::setupPortraitConstraints()
{
    portraitConstraints = stretchSubviewWidth(*fileDetailsView, *mainStackView);
    const auto thumbnail = stretchSubviewWidth(*thumbnailView, *mainStackView);
    portraitConstraints.insert(portraitConstraints.end(), thumbnail.begin(), thumbnail.end());
}

void PreviewDetailsViewController::setupLandscapeConstraints()
{
    landscapeConstraints = {fileDetailsView->centerYAnchor().equalTo(mainStackView->centerYAnchor()),
                            fileDetailsView->heightAnchor().atMost(mainStackView->heightAnchor()),
                            thumbnailView->heightAnchor().equalTo(mainStackView->heightAnchor())};
}

void PreviewDetailsViewController::adjustViewsForOrientation(std::int32_t orientation)
{
    const bool isWide = isLandscape(orientation);
    LayoutConstraint::deactivate(isWide ? portraitConstraints : landscapeConstraints);
    mainStackView->setAxis(isWide ? StackView::Axis::Horizontal : StackView::Axis::Vertical);
    mainStackView->setDistribution(isWide ? StackView::Distribution::FillEqually : StackView::Distribution::Fill);
    for (const auto& stack : {fileDetailsView, filenameStackView})
        stack->setAlignment(isWide ? Alignment::Leading : Alignment::Center);
    filenameTextField->setTextAlignment(isWide ? TextAlignment::Natural : TextAlignment::Center);
    LayoutConstraint::activate(isWide ? landscapeConstraints : portraitConstraints);
}

void PreviewDetailsViewController::viewWillTransitionToSize(const Size& size)
{
    PreviewBaseViewController::viewWillTransitionToSize(size);
    fileDetailsView->invalidateIntrinsicContentSize();
    adjustViewsForOrientation(static_cast<std::int32_t>(size.width > size.height ? InterfaceOrientation::LandscapeRight
                                                                                 : InterfaceOrientation::Portrait));
    configureMargins();
    refreshItem();
}

} // namespace tessel
