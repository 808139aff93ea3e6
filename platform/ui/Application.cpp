#include "platform/ui/Application.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
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
    delegate_.applicationWillFinishLaunchingWithOptions(options);
    restoreState();
    delegate_.applicationDidFinishLaunchingWithOptions(options);
    becomeActive();
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
    saveState();
}

void Application::restoreState()
{
    if (!delegate_.applicationShouldRestoreApplicationState())
        return;
    const auto root = restorableController();
    const auto states = states_.load();
    if (!root || !states)
        return;
    const auto state = states->find(root->restorationIdentifier);
    if (state == states->end())
        return;
    if (const auto* values = state->second.get<Value::Dictionary>())
        root->decodeRestorableState(StateCoder(*values));
}

void Application::saveState()
{
    if (!delegate_.applicationShouldSaveApplicationState())
        return;
    const auto root = restorableController();
    if (!root)
        return;
    StateCoder coder;
    root->encodeRestorableState(coder);
    states_.save({{root->restorationIdentifier, coder.values()}});
}

} // namespace tessel
