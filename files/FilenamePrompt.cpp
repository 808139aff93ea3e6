#include "files/FilenamePrompt.h"

#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Device.h"

namespace tessel {

namespace {

constexpr double kFieldLines = 1.2; ///< the field's height, in lines of its font

std::string trimmed(std::string_view text)
{
    return platform::installed().text.trimmed(text);
}

} // namespace

std::shared_ptr<FilenamePrompt> FilenamePrompt::newWithTitle(const Text& title, const Text& message,
                                                             const Text& placeholder, const Text& filename,
                                                             const Text& doneButtonText, Callback completion)
{
    auto prompt = std::make_shared<FilenamePrompt>();
    prompt->initWithTitle(title, message, placeholder, filename, doneButtonText, std::move(completion));
    return prompt;
}

void FilenamePrompt::initWithTitle(const Text& title, const Text& message, const Text& placeholder,
                                   const Text& filename, const Text& doneButtonText, Callback completion)
{
    origFilename = filename;
    validateNewFilenameCallback = std::move(completion);
    alert = std::make_shared<AlertController>(AlertController::Style::Alert, title.value_or(""), message.value_or(""));
    addTextField(placeholder);
    addCancelAction(nullptr);
    addDefaultAction(doneButtonText);
    errMsgViewController = std::make_shared<SimpleTextViewController>();
    alert->setContentViewController(errMsgViewController);
    updateErrorMessage("");
    keyboardWillShow_ =
        platform::installed().notifications.observe(kKeyboardWillShowNotification, [this] { keyboardWillShow(); });
}

void FilenamePrompt::addTextField(const Text& placeholder)
{
    alert->addTextField([&](TextField& field) {
        field.setText(origFilename.value_or(""));
        field.setPlaceholder(placeholder.value_or(""));
        field.showsClearButtonWhileEditing = true;
        field.returnKey = TextField::ReturnKey::Done;
        field.capitals = TextField::Capitals::Words;
        field.corrects = false;
        field.delegate = weak_from_this();
        field.editingChanged = [prompt = weak_from_this()](TextField& changed) {
            if (const auto self = prompt.lock())
                self->folderPromptTextFieldChanged(changed);
        };
        const auto lineHeight = platform::installed().device.textMeasurer().metrics(field.font()).lineHeight;
        field.setFrame({0, 0, 0, kFieldLines * lineHeight});
    });
    textField = alert->textFields().back();
}

void FilenamePrompt::addDefaultAction(const Text& title)
{
    const auto text = title && !title->empty() ? *title : platform::installed().text.localized("Done");
    defaultAction = std::make_shared<AlertAction>(text, AlertAction::Style::Default, nullptr);
    defaultAction->shouldDismiss = [prompt = weak_from_this()] {
        const auto self = prompt.lock();
        return self && self->handleDoneAction();
    };
    if (!origFilename || origFilename->empty())
        defaultAction->setEnabled(false);
    alert->addAction(defaultAction);
}

void FilenamePrompt::addCancelAction(const AlertAction::Handler& handler)
{
    alert->addAction(std::make_shared<AlertAction>(platform::installed().text.localized("Cancel"),
                                                   AlertAction::Style::Default, handler));
}

void FilenamePrompt::folderPromptTextFieldChanged(TextField& field)
{
    const auto& text = platform::installed().text;
    const auto name = trimmed(field.text());
    const bool valid = FileUtils::isValidFilename(name);
    if (valid)
        updateErrorMessage(std::nullopt);
    else if (name.empty())
        updateErrorMessage("");
    else
        updateErrorMessage(
            text.localized(name.front() == '.' ? "Choose a different name." : "Character not allowed in filename"));
    setDoneButtonEnabled(valid);
}

bool FilenamePrompt::handleDoneAction()
{
    if (alert->textFields().empty())
        return false;
    const auto self = shared_from_this();
    const auto name = trimmed(alert->textFields().front()->text());
    if (!FileUtils::isValidFilename(name))
        return false;
    bool done = false;
    const auto message = validateNewFilenameCallback(name, done);
    if (!done)
        updateErrorMessage(message);
    return done;
}

bool FilenamePrompt::textFieldShouldReturn(TextField& field)
{
    TSD_FUNCTION("-[FilenamePrompt textFieldShouldReturn:]");
    TSD_DEBUG("textFieldShouldReturn");
    const auto self = shared_from_this();
    const bool accepted = handleDoneAction();
    if (accepted) {
        field.resignFirstResponder();
        alert->dismiss(Animated::Yes);
    }
    return accepted;
}

void FilenamePrompt::textFieldDidBeginEditing(TextField& field)
{
    UIUtils::setCursorInTextFieldToBeforeExtension(field);
}

void FilenamePrompt::updateErrorMessage(const Text& message)
{
    auto& area = errMsgViewController->view();
    const auto text = message.value_or("");
    errMsgViewController->messageLabel->setText(text);
    if (area.hidden() != text.empty())
        area.setHidden(text.empty());
}

void FilenamePrompt::setDoneButtonEnabled(bool enabled)
{
    defaultAction->setEnabled(enabled);
    textField->setReturnKeyEnabled(enabled);
}

void FilenamePrompt::keyboardWillShow()
{
    if (textField->isFirstResponder())
        textField->setReturnKeyEnabled(defaultAction->enabled());
}

} // namespace tessel
