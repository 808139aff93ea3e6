#include "files/NewFolderPrompt.h"

#include "platform/base/Platform.h"
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

} // namespace tessel
