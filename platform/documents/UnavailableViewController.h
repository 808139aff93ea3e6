#pragma once

#include "platform/ui/ViewController.h"

#include <memory>

namespace tessel {

/// Shown in place of the drive while no account is signed in.
class UnavailableViewController : public ViewController {
public:
    [[nodiscard]] static std::shared_ptr<UnavailableViewController> create();

    [[nodiscard]] std::string className() const override { return "UnavailableViewController"; }

    /// Why there is nothing to see, in the user's language.
    [[nodiscard]] std::string message() const;
};

} // namespace tessel
