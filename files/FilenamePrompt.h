#pragma once

#include "files/SimpleTextViewController.h"
#include "platform/base/NotificationCenter.h"
#include "platform/ui/AlertController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessel {

/// Asks for the name of an item. The name is checked with every change; while it is invalid the reason stands in the
/// alert and it cannot be confirmed. Whoever shows the alert keeps the prompt, which the alert does not. Main thread
/// only.
class FilenamePrompt : public TextFieldDelegate, public std::enable_shared_from_this<FilenamePrompt> {
public:
    using Text = std::optional<std::string>;
    /// Does what the name was asked for. Told a valid name without blanks at its ends.
    /// @param done false at first; set when the name was accepted, which closes the alert
    /// @returns the message to show if it was not
    using Callback = std::function<Text(const std::string& name, bool& done)>;

    [[nodiscard]] static std::shared_ptr<FilenamePrompt> newWithTitle(const Text& title, const Text& message,
                                                                      const Text& placeholder, const Text& filename,
                                                                      const Text& doneButtonText, Callback completion);

    std::shared_ptr<AlertController> alert;
    std::shared_ptr<SimpleTextViewController> errMsgViewController;
    std::shared_ptr<AlertAction> defaultAction;
    Text origFilename;
    Callback validateNewFilenameCallback;
    std::shared_ptr<TextField> textField;

    /// @returns whether the name was accepted
    bool handleDoneAction();
    /// None or empty takes the message away.
    void updateErrorMessage(const Text&);
    void folderPromptTextFieldChanged(TextField&);
    void setDoneButtonEnabled(bool);

    bool textFieldShouldReturn(TextField&) override;
    void textFieldDidBeginEditing(TextField&) override;

protected:
    /// Called once, by what makes the prompt.
    void initWithTitle(const Text& title, const Text& message, const Text& placeholder, const Text& filename,
                       const Text& doneButtonText, Callback completion);

private:
    void addTextField(const Text& placeholder);
    void addDefaultAction(const Text& title);
    void addCancelAction(const AlertAction::Handler&);
    void keyboardWillShow();

    NotificationCenter::Observation keyboardWillShow_;
};

} // namespace tessel
