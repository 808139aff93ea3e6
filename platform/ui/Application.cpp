#include "platform/ui/Application.h"

#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/StateCoder.h"
#include "platform/ui/ViewController.h"
#include "platform/ui/Window.h"

#include <utility>

namespace tessel {

namespace {

/// The controller whose state is kept; null when there is none to keep.
std::shared_ptr<ViewController> restorableController()
{
    const auto window = platform::installed().device.keyWindow();
    const auto root = window ? window->rootViewController() : nullptr;
    return root && !root->restorationIdentifier.empty() ? root : nullptr;
}

} // namespace

void Application::launch(const LaunchOptions& options)
{
    // What a shortcut has begun takes the place of where the user was.
    if (delegate_.applicationWillFinishLaunchingWithOptions(options))
        restoreState();
    delegate_.applicationDidFinishLaunchingWithOptions(options);
    becomeActive();
    screen_ = platform::installed().notifications.observe(kScreenDidChangeNotification, [this] { saveSoon(); });
}

bool Application::continueActivity(const UserActivity& activity)
{
    return delegate_.applicationWillContinueUserActivityWithType(activity.type) &&
           delegate_.applicationContinueUserActivity(activity);
}

void Application::becomeActive()
{
    active_ = true;
    platform::installed().notifications.post(kDidBecomeActiveNotification);
}

void Application::resignActive()
{
    if (!std::exchange(active_, false))
        return;
    delegate_.applicationWillResignActive();
    platform::installed().notifications.post(kWillResignActiveNotification);
    saveState(Durability::Machine);
}

void Application::restoreState()
{
    if (!delegate_.applicationShouldRestoreApplicationState())
        return;
    const auto root = restorableController();
    if (!root)
        return;
    if (auto* keeper = dynamic_cast<SessionKeeper*>(root.get()); keeper && sessions_) {
        lastSession_ = sessions_->load().value_or(Value::Dictionary());
        keeper->decodeSession(StateCoder(lastSession_));
    }
    lastState_ = states_.load().value_or(Value::Dictionary());
    const auto state = lastState_.find(root->restorationIdentifier);
    const auto* values = state == lastState_.end() ? nullptr : state->second.get<Value::Dictionary>();
    if (values)
        root->decodeRestorableState(StateCoder(*values));
}

void Application::saveSoon()
{
    if (!active_ || std::exchange(savesSoon_, true))
        return;
    platform::installed().mainQueue.async([weak = std::weak_ptr(self_)] {
        const auto self = weak.lock();
        if (!self)
            return;
        (*self)->savesSoon_ = false;
        if ((*self)->active_)
            (*self)->saveState(Durability::Program);
    });
}

void Application::saveState(Durability durability)
{
    if (!delegate_.applicationShouldSaveApplicationState())
        return;
    const auto root = restorableController();
    if (!root)
        return;
    StateCoder state;
    root->encodeRestorableState(state);
    save(states_, {{root->restorationIdentifier, state.values()}}, lastState_, durability);
    if (const auto* keeper = dynamic_cast<const SessionKeeper*>(root.get()); keeper && sessions_) {
        StateCoder session;
        keeper->encodeSession(session);
        save(*sessions_, session.values(), lastSession_, durability);
    }
}

void Application::save(StateStore& store, Value::Dictionary state, Value::Dictionary& last, Durability durability)
{
    if (durability == Durability::Machine)
        store.save(state);
    else if (state != last)
        store.keep(state);
    last = std::move(state);
}

} // namespace tessel
