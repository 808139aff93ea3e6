#pragma once

#include "platform/ui/Application.h"
#include "platform/ui/Window.h"

#include <memory>

namespace tessel {

/// An application that shows every kind of view, bar item and presentation once, for those who work on a shell. Its
/// texts are in English only.
class Gallery : public ApplicationDelegate {
public:
    bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) override;
    bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) override { return true; }
    void applicationWillResignActive() override {}
    bool applicationShouldSaveApplicationState() override { return false; }
    bool applicationShouldRestoreApplicationState() override { return false; }

private:
    std::shared_ptr<Window> window_;
};

} // namespace tessel
