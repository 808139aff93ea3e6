#pragma once

#include "files/FilenamePrompt.h"
#include "platform/base/URL.h"

namespace tessel {

/// Asks for the name of a folder that is to be made.
class NewFolderPrompt final : public FilenamePrompt {
public:
    [[nodiscard]] static std::shared_ptr<NewFolderPrompt> newWithTitle(const Text& title, const Text& doneButtonText,
                                                                       Callback completion);
    /// Makes the folder, when the user has named it, in this one. @param made told of it
    [[nodiscard]] static std::shared_ptr<NewFolderPrompt> newInFolder(const URL&, std::function<void(const URL&)> made);
};

} // namespace tessel
