#include "tests/support/InstalledPlatform.h"

#include "platform/documents/DocumentListController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace tessel {

namespace {

bool isListOnScreenBusy()
{
    const auto window = platform::installed().device.keyWindow();
    const auto navigation =
        window ? std::dynamic_pointer_cast<NavigationController>(window->rootViewController()) : nullptr;
    const auto list =
        navigation ? std::dynamic_pointer_cast<DocumentListController>(navigation->topViewController()) : nullptr;
    return list && list->isBusy();
}

} // namespace

InstalledPlatform::InstalledPlatform(const URL& home, const URL& drive)
{
    LinuxPlatformOptions options;
    options.home = home.path();
    options.drive = drive.path();
    options.clock = &clock_;
    options.locale = "en";
    auto platform = LinuxPlatform::create(options);
    if (!platform)
        throw std::runtime_error(platform.error().description);
    platform_ = std::move(platform.value());
    scope_ = std::make_unique<platform::Scope>(platform_->services());
    platform_->services().log.addSink(log);
}

InstalledPlatform::~InstalledPlatform() = default;

void InstalledPlatform::settle()
{
    auto& queue = services().mainQueue;
    EXPECT_TRUE(runUntil([&] { return !queue.runReady() && !isListOnScreenBusy(); }));
}

bool InstalledPlatform::runUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
        services().mainQueue.runReady();
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

void InstalledPlatform::turn(double seconds)
{
    tessel::turn(clock_, services().mainQueue, seconds);
}

} // namespace tessel
