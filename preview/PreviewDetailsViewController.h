#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/ui/NavigationItem.h"
#include "platform/ui/TextField.h"
#include "preview/PreviewBaseViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class DRItem;
class FileInfoStackView;
class StackView;
class ThumbnailImageView;

/// Describes a document: its thumbnail, its name, which can be edited, and what is known of it; on a tablet also a
/// button that opens it. One above the other, or side by side where the screen is wider than high. Main thread only.
class PreviewDetailsViewController : public PreviewBaseViewController, public TextFieldDelegate {
public:
    [[nodiscard]] std::string className() const override { return "PreviewDetailsViewController"; }

    std::shared_ptr<ThumbnailImageView> thumbnailView;
    std::shared_ptr<TextField> filenameTextField;
    std::shared_ptr<FileInfoStackView> fileInfoView;
    /// The name on the disk, as it was known last: what Cancel restores.
    std::optional<std::string> originalFilename;
    std::shared_ptr<LayoutConstraint> filenameTextFieldFullWidthConstraint;
    std::shared_ptr<StackView> mainStackView;
    LayoutConstraint::List portraitConstraints; ///< active but for landscapeConstraints
    LayoutConstraint::List landscapeConstraints;
    std::shared_ptr<StackView> filenameStackView;
    std::shared_ptr<StackView> fileDetailsView;
    /// Null when no application opens the document.
    std::shared_ptr<Button> openInAppButton;
    BarButtonItems originalRightBarButtonItems; ///< while the name is edited

    /// Whether the button stands among the details, and not in the navigation bar.
    [[nodiscard]] bool shouldDisplayOpenInAppButtonInView() const;
    [[nodiscard]] std::shared_ptr<Button> openInAppNavControllerButton() override;
    void refreshItem() override;

    void setupViewsAndConstraints();
    [[nodiscard]] std::shared_ptr<StackView> buildStackViewForFilenameWithHairlines();
    [[nodiscard]] std::shared_ptr<StackView> buildFileDetailsStackView();
    using Views = std::vector<std::shared_ptr<View>>;
    [[nodiscard]] std::shared_ptr<StackView> buildVerticalStackWithSubviews(const Views&, double spacing) const;
    void stretchSubview(View& subview, View& withinView, bool includeBottom) const;
    /// Not active yet.
    [[nodiscard]] LayoutConstraint::List stretchSubviewWidth(View& subview, View& withinView) const;
    void setupPortraitConstraints();
    void setupLandscapeConstraints();
    /// @param orientation as InterfaceOrientation counts
    void adjustViewsForOrientation(std::int32_t orientation);
    void viewWillTransitionToSize(const Size&) override;

    void viewWasTapped();
    void forceRenameCancel();
    void forceRenameDone();
    void updateNavBarForRename(bool isRenaming);
    bool textFieldShouldChangeCharacters(TextField&, std::size_t location, std::size_t length,
                                         const std::string& replacement) override;
    bool textFieldShouldBeginEditing(TextField&) override;
    void textFieldDidBeginEditing(TextField&) override;
    /// Renames. @returns no when that failed: the name goes on being edited, under an alert that tells why
    bool textFieldShouldEndEditing(TextField&) override;
    void textFieldDidEndEditing(TextField&) override;
    bool textFieldShouldReturn(TextField&) override;
    bool _textFieldShouldScrollToVisibleWhenBecomingFirstResponder(TextField&) override { return false; }

    void registerForKeyboardNotifications();
    void unregisterForKeyboardNotifications();
    void keyboardWillBeShown(const KeyboardMotion&);
    void keyboardWillBeHidden(const KeyboardMotion&);

protected:
    void viewDidLoad() override;
    void viewWillAppear(Animated) override;
    void viewWillDisappear(Animated) override;

    /// Null without one.
    [[nodiscard]] std::shared_ptr<DRItem> item() const;

private:
    [[nodiscard]] std::shared_ptr<PreviewDetailsViewController> self();
    void makeOpenInAppButton();
    void makeTextField();
    void tieFileDetails();
    [[nodiscard]] bool isUnderAnother() const;
    bool rename(TextField&);
    [[nodiscard]] double offsetOfName(double top, double most) const;
    [[nodiscard]] double _mainStackViewContentViewYDifference() const;
    void _animateWithKeyboardInfoDictionary(const KeyboardMotion&, const std::function<void()>& animationBlock);

    NotificationCenter::Observation keyboardWillShow_;
    NotificationCenter::Observation keyboardWillHide_;
};

} // namespace tessel
