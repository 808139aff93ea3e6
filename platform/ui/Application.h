#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/base/Value.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class StateCoder;
class StateStore;

inline constexpr const char* kDidBecomeActiveNotification = "ApplicationDidBecomeActive";
inline constexpr const char* kWillResignActiveNotification = "ApplicationWillResignActive";

/// Posted on the main thread when the screen has changed, or what a restart is to bring back.
inline constexpr const char* kScreenDidChangeNotification = "ScreenDidChange";

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
    /// @param sessions where the user was, for a root controller that keeps it; may be null
    Application(ApplicationDelegate& delegate, StateStore& states, StateStore* sessions = nullptr)
        : delegate_(delegate), states_(states), sessions_(sessions)
    {
    }

    /// Finishes launching: the delegate makes its window, the saved state is restored into the key window's root
    /// controller if the delegate agrees, and the program becomes active.
    void launch(const LaunchOptions&);

    /// Also posts the notification when it is active already: coming back to the screen is reason enough to look again.
    void becomeActive();
    /// Saves the state of the root controller, if the delegate agrees, as is done in the turn after each change of the
    /// screen, so that a program that is killed comes back as well. Nothing when it is not active.
    void resignActive();

private:
    enum class Durability { Program, Machine };

    void restoreState();
    void saveSoon();
    void saveState(Durability);
    static void save(StateStore&, Value::Dictionary, Value::Dictionary& last, Durability);

    ApplicationDelegate& delegate_;
    StateStore& states_;
    StateStore* const sessions_;
    bool active_ = false;
    bool savesSoon_ = false;
    Value::Dictionary lastState_;   ///< that was saved or restored
    Value::Dictionary lastSession_; ///< likewise
    NotificationCenter::Observation screen_;
    const std::shared_ptr<Application*> self_ = std::make_shared<Application*>(this); ///< known weakly to tasks
};

} // namespace tessel
