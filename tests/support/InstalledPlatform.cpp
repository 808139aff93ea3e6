#include "tests/support/InstalledPlatform.h"

#include "platform/documents/DocumentListController.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

#include <chrono>
#include <stdexcept>

namespace tessel {

namespace {

void check(const std::optional<Error>& error)
{
    if (error)
        throw std::runtime_error(error->description);
}

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

InstalledPlatform::InstalledPlatform() : drive("drive")
{
    install(drive.url().deletingLastPathComponent().appending("home"), drive.url().path());
}

InstalledPlatform::InstalledPlatform(std::initializer_list<Library> libraries) : drive("home/Mobile Documents")
{
    drive.folder(containerFolderName(kDefaultContainerIdentifier));
    for (const auto& [identifier, localizedName, owners, documentTypes, depth] : libraries) {
        const auto folder = drive.folder(containerFolderName(identifier) + "/Documents").deletingLastPathComponent();
        check(writeContainerDeclaration({identifier, folder, localizedName, depth, documentTypes, owners}, folder));
    }
    install(drive.url().deletingLastPathComponent(), std::nullopt);
}

InstalledPlatform::~InstalledPlatform() = default;

void InstalledPlatform::install(const URL& home, std::optional<std::string> boundDrive)
{
    const DesktopFolders folders = {.configuration = {desktop.url("config").path()},
                                    .data = {desktop.url("data").path()},
                                    .programs = {desktop.url("bin").path()},
                                    .desktops = {}};
    auto platform = LinuxPlatform::create(
        {home.path(), std::move(boundDrive), &clock, "en", folders, TESSELDRIVE_DECODER, TESSELDRIVE_PLAYER});
    check(platform ? std::nullopt : std::optional(platform.error()));
    platform_ = std::move(platform.value());
    services().mainQueue.setWakeHandler([this] {
        const std::lock_guard lock(mutex_);
        isWoken_ = true;
        woken_.notify_one();
    });
    services().log.addSink(log);
    scope_ = std::make_unique<platform::Scope>(services());
}

void InstalledPlatform::settle()
{
    auto& queue = services().mainQueue;
    if (!runUntil([&] { return !queue.runReady() && !queue.isExpecting() && !isListOnScreenBusy(); }))
        throw std::runtime_error("work is still under way");
}

bool InstalledPlatform::runUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (true) {
        services().mainQueue.runReady();
        if (condition())
            return true;
        std::unique_lock lock(mutex_);
        if (!woken_.wait_until(lock, deadline, [this] { return isWoken_; }))
            return false;
        isWoken_ = false;
    }
}

void InstalledPlatform::turn(double seconds)
{
    auto& queue = services().mainQueue;
    const auto end = clock.uptime() + ManualClock::ticks(seconds);
    queue.runReady();
    for (auto due = queue.nextDue(); due && *due <= end; due = queue.nextDue()) {
        clock.advanceTo(*due);
        queue.runReady();
    }
    clock.advanceTo(end);
    queue.runReady();
}

} // namespace tessel
