#pragma once

#include "platform/base/Error.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Value.h"

#include <map>
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
    static constexpr const char* kSearch = "orvane.quillbox.shortcut.search"; ///< a type, like the next
    static constexpr const char* kRecentDocument = "orvane.quillbox.shortcut.recent";
    /// Of `userInfo`: the document, as an archived URL, as the number by which it is known, or as another archived URL;
    /// the first that is there counts.
    static constexpr const char* kAliasURLKey = "AliasURL";
    static constexpr const char* kDocumentIdentifierKey = "DocumentIdentifier";
    static constexpr const char* kDocumentURLKey = "DocumentURL";

    std::string type;
    Value::Dictionary userInfo;
};

/// Something that the user began elsewhere and goes on with here.
struct UserActivity {
    static constexpr const char* kSearchQuery = "orvane.search.query";    ///< a search in the whole system; a type
    static constexpr const char* kSearchResult = "orvane.search.result";  ///< a document that such a search found
    static constexpr const char* kSearchQueryKey = "Query";               ///< of `userInfo`, a text
    static constexpr const char* kSearchItemIdentifierKey = "Identifier"; ///< of `userInfo`, a text

    std::string type;
    Value::Dictionary userInfo;
};

using TestOptions = std::map<std::string, std::string>;

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

    // What is asked for from outside; a program without a drive does none of it.

    /// @returns whether a document is shown
    virtual bool applicationOpenURL(const std::string& /*url*/, const Value::Dictionary& /*options*/) { return false; }
    virtual void applicationPerformActionForShortcutItem(const ShortcutItem&) {}
    /// @returns whether the program knows activities of this type
    virtual bool applicationWillContinueUserActivityWithType(const std::string& /*type*/) { return false; }
    virtual bool applicationContinueUserActivity(const UserActivity&) { return false; }
    virtual void applicationDidFailToContinueUserActivityWithType(const std::string& /*type*/, const Error&) {}
    /// @returns whether a test of that name was begun
    virtual bool applicationRunTest(const std::string& /*name*/, const TestOptions&) { return false; }
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

    bool openURL(const std::string& url, const Value::Dictionary& options = {})
    {
        return delegate_.applicationOpenURL(url, options);
    }
    void performShortcut(const ShortcutItem& item) { delegate_.applicationPerformActionForShortcutItem(item); }
    /// @returns whether the program knows such activities
    bool continueActivity(const UserActivity&);
    /// Tells that an activity, which the user wanted to continue, cannot be had from where it is.
    void failToContinue(const std::string& type, const Error& error)
    {
        delegate_.applicationDidFailToContinueUserActivityWithType(type, error);
    }
    bool runTest(const std::string& name, const TestOptions& options)
    {
        return delegate_.applicationRunTest(name, options);
    }

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
