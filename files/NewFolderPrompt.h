#pragma once

#include "files/FilenamePrompt.h"

namespace tessel {

/// Asks for the name of a folder that is to be made.
class NewFolderPrompt final : public FilenamePrompt {
public:
    [[nodiscard]] static std::shared_ptr<NewFolderPrompt> newWithTitle(const Text& title, const Text& doneButtonText,
                                                                       Callback completion);
};

} // namespace tessel
