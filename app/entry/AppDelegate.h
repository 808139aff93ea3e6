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

    /// Takes "tesseldriveapp:" with the path of a document, percent-encoded twice or once, and "mode" as a query item:
    /// "preview", "details" or "info". Whatever else there is in the URL counts for nothing.
    bool applicationOpenURL(const std::string& url, const Value::Dictionary& options) override;
    void applicationPerformActionForShortcutItem(const ShortcutItem&) override;
    bool applicationWillContinueUserActivityWithType(const std::string& type) override;
    bool applicationContinueUserActivity(const UserActivity&) override;
    void applicationDidFailToContinueUserActivityWithType(const std::string& type, const Error&) override;
    /// Scrolls through a library, to measure it; only tests whose names begin with "Scroll".
    bool applicationRunTest(const std::string& name, const TestOptions&) override;

    /// Made when launching begins, never replaced.
    std::shared_ptr<Window> rootWindow;

private:
    static void dumpWindowInfo() {}
    [[nodiscard]] bool isDriveAvailable() const;
    [[nodiscard]] std::shared_ptr<NavController> navigation() const;
    void continueSearch(const UserActivity&) const;
    void openSearchResult(const UserActivity&) const;
    void openContinuedDocument(const UserActivity&) const;
};

} // namespace tessel
