#include "files/NewFolderPrompt.h"

#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "platform/base/Platform.h"
#include "platform/text/GeneralError.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::shared_ptr<NewFolderPrompt> NewFolderPrompt::newWithTitle(const Text& title, const Text& doneButtonText,
                                                               Callback completion)
{
    const auto& text = platform::installed().text;
    auto prompt = std::make_shared<NewFolderPrompt>();
    prompt->initWithTitle(title, text.localized("Enter a name for this folder."), text.localized("Folder Name"),
                          std::nullopt, doneButtonText, std::move(completion));
    return prompt;
}

std::shared_ptr<NewFolderPrompt> NewFolderPrompt::newInFolder(const URL& folder, std::function<void(const URL&)> made)
{
    const auto& text = platform::installed().text;
    return newWithTitle(text.localized("New Folder"), text.localized("Create"),
                        [folder, made = std::move(made)](const std::string& name, bool& done) {
                            const auto url = folder.appending(name);
                            const auto error =
                                FileUtils::exists(url) ? generalError(ErrorCode::kFileExists) : FileUtils::mkdir(url);
                            done = !error;
                            if (done)
                                made(url);
                            return error ? Text(UIUtils::bestMessage(error)) : Text();
                        });
}

} // namespace tessel
