#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/ui/AlertController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

class BarButtonItem;

/// What several screens share when the user renames, moves and deletes items: the rename itself, errors told in
/// friendly words, and the question before a deletion. Alerts return at once; the user answers later. Main thread only.
class UIUtils {
public:
    UIUtils() = delete;

    using Presenter = std::shared_ptr<ViewController>;
    /// Told how the user answered. @param action the chosen one; null when nothing was asked
    using DeleteCompletion = std::function<void(const std::shared_ptr<AlertAction>& action, bool cancelled)>;

    /// Gives an item a name that the user typed; a reference's document in the reference's place.
    /// @returns error 514 for an empty or invalid name, nothing being touched; none for the name that it has
    [[nodiscard]] static std::optional<Error> renameItemAtURL(const URL&, const std::string& toName);
    /// The item's URL under another name. Its extension stays: one that was not typed is added, while the typed one's
    /// letter case counts.
    [[nodiscard]] static URL computeNewURL(const URL&, const std::string& newBasename);

    /// What a prompt says when a name was refused; empty without an error.
    [[nodiscard]] static std::string bestMessage(const std::optional<Error>&);

    /// Names the item by the error's destination.
    static void showFriendlyMoveError(const Error&, const Presenter& parentViewController);
    static void showFriendlyRenameError(const Error&, const std::string& basename,
                                        const Presenter& parentViewController);
    static void showFriendlyMoveOrRenameError(const Error&, const std::string& basename, bool movingToDir,
                                              const Presenter& parentViewController);
    static void showItemExistsAlert(const std::string& name, bool movingToDir, const Presenter& parentViewController);
    static void showInvalidItemNameAlert(const std::string& name, const Presenter& parentViewController);
    static void showAlert(const std::string& title, const std::string& message, const Presenter& parentViewController);
    /// @param error none: something failed, and nobody knows what
    static void showError(const std::optional<Error>& error, const Presenter& parentViewController);
    static void showUnsupportedError(const Presenter&);

    /// Asks before a deletion. Without URLs nothing is asked, and the completion is told so at once; for a single item
    /// that cannot be described nothing is asked either, and the completion is not called.
    /// @param usingView the sheet points at its middle; null: it points at the button
    static void showDeleteWarningAlert(const std::vector<URL>&, bool hasContainer, const Presenter& viewController,
                                       const std::shared_ptr<View>& usingView,
                                       const std::shared_ptr<BarButtonItem>& usingButton,
                                       const DeleteCompletion& completion);
    /// The question; none for a single item that cannot be described.
    [[nodiscard]] static std::optional<std::string> messageForDeletePrompt(const std::vector<URL>&);

    static void addChildViewController(ViewController& parent, const std::shared_ptr<ViewController>& child);

    /// Whether the device is a tablet.
    [[nodiscard]] static bool vellumMode();

    /// Before the last dot of the text; without a dot the caret stays.
    static void setCursorInTextFieldToBeforeExtension(TextField&);
    static void selectTextInTextField(TextField&, const TextRange&);
};

} // namespace tessel
