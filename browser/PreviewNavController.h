#pragma once

#include "platform/ui/NavigationController.h"

namespace tessel {

/// A navigation controller for previews, with no behaviour of its own.
class PreviewNavController final : public NavigationController {
public:
    [[nodiscard]] std::string className() const override { return "PreviewNavController"; }
};

} // namespace tessel
