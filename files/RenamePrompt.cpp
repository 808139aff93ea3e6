#include "files/RenamePrompt.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::shared_ptr<RenamePrompt> RenamePrompt::newWithFilename(const Text& filename, Callback completion)
{
    const auto& text = platform::installed().text;
    auto prompt = std::make_shared<RenamePrompt>();
    prompt->initWithTitle(text.localized("Rename Item"), text.localized("Enter a new name for this item."),
                          std::nullopt, filename, text.localized("Done"), std::move(completion));
    return prompt;
}

} // namespace tessel
