#pragma once

#include "platform/base/Value.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class StateCoder;
class StateStore;

inline constexpr const char* kDidBecomeActiveNotification = "ApplicationDidBecomeActive";
inline constexpr const char* kWillResignActiveNotification = "ApplicationWillResignActive";

/// A shortcut of the home screen that the user pressed.
struct ShortcutItem {
    std::string type;
    Value::Dictionary userInfo;
};

struct LaunchOptions {
    std::optional<ShortcutItem> shortcutItem;
};

class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// @returns false when the shortcut among the options has been dealt with here.
    virtual bool applicationWillFinishLaunchingWithOptions(const LaunchOptions&) = 0;
    virtual bool applicationDidFinishLaunchingWithOptions(const LaunchOptions&) = 0;
    virtual void applicationWillResignActive() = 0;
    virtual bool applicationShouldSaveApplicationState() = 0;
    virtual bool applicationShouldRestoreApplicationState() = 0;
};

/// The life of the program between start and end, as a shell drives it. Main thread only.
class Application {
public:
    Application(ApplicationDelegate& delegate, StateStore& states) : delegate_(delegate), states_(states) {}

    /// Finishes launching: the delegate makes its window, the saved state is restored into the key window's root
    /// controller if the delegate agrees, and the program becomes active.
    void launch(const LaunchOptions&);

    /// Also posts the notification when it is active already: coming back to the screen is reason enough to look again.
    void becomeActive();
    /// Saves the state of the root controller, if the delegate agrees. Nothing when it is not active.
    void resignActive();

private:
    void restoreState();
    void saveState();

    ApplicationDelegate& delegate_;
    StateStore& states_;
    bool active_ = false;
};

} // namespace tessel
