#include "app/entry/AppDelegate.h"

#include "app/common/Log.h"
#include "app/common/Settings.h"
#include "browser/NavController.h"
#include "platform/ui/Device.h"

namespace tessel {

bool AppDelegate::applicationWillFinishLaunchingWithOptions(const LaunchOptions& options)
{
    TSD_FUNCTION("-[AppDelegate application:willFinishLaunchingWithOptions:]");
    const auto& device = platform::installed().device;
    rootWindow = std::make_shared<Window>(device.screenBounds());
    rootWindow->setBackgroundColor(Color::white());
    const auto navigation = std::make_shared<NavController>();
    if (device.idiom != Idiom::Pad || Settings::quickLaunch())
        rootWindow->setRootViewController(navigation);
    if (const auto& root = rootWindow->rootViewController())
        root->restorationIdentifier = "Root";
    rootWindow->makeKeyAndVisible();

    if (!options.shortcutItem)
        return true;
    TSD_INFO("Launched with shortcut: %{public}@", options.shortcutItem->type);
    applicationPerformActionForShortcutItem(*options.shortcutItem);
    return false;
}

bool AppDelegate::applicationDidFinishLaunchingWithOptions(const LaunchOptions&)
{
    return true;
}

void AppDelegate::applicationWillResignActive()
{
    dumpWindowInfo();
}

bool AppDelegate::applicationShouldSaveApplicationState()
{
    return isDriveAvailable();
}

bool AppDelegate::applicationShouldRestoreApplicationState()
{
    return isDriveAvailable();
}

bool AppDelegate::isDriveAvailable() const
{
    const auto root = navigation();
    return root && root->checkTesselState();
}

std::shared_ptr<NavController> AppDelegate::navigation() const
{
    return std::dynamic_pointer_cast<NavController>(rootWindow->rootViewController());
}

} // namespace tessel
