#pragma once

#include "platform/ui/Application.h"
#include "platform/ui/Window.h"

#include <memory>

namespace tessel {

class NavController;

/// Builds the program's one window and answers the platform's questions about its life.
class AppDelegate : public ApplicationDelegate {
public:
    bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) override;
    bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) override;
    void applicationWillResignActive() override;
    bool applicationShouldSaveApplicationState() override;
    bool applicationShouldRestoreApplicationState() override;

    /// Made when launching begins, never replaced.
    std::shared_ptr<Window> rootWindow;

private:
    static void dumpWindowInfo() {}
    [[nodiscard]] bool isDriveAvailable() const;
};

} // namespace tessel
