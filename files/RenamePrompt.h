#pragma once

#include "files/FilenamePrompt.h"

namespace tessel {

/// Asks for a new name of an item.
class RenamePrompt final : public FilenamePrompt {
public:
    [[nodiscard]] static std::shared_ptr<RenamePrompt> newWithFilename(const Text& filename, Callback completion);
};

} // namespace tessel
