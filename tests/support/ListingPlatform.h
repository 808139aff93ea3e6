#pragma once

#include "platform/linux/files/LinuxFolderReader.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"
#include "tests/support/ItemPlatform.h"
#include "tests/support/TemporaryDrive.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace tessel {

/// A cloud of the drive's own container and the libraries that a test writes down, none of them hidden.
class ListingCloud final : public CloudService {
public:
    std::shared_ptr<const CloudContainer> top;
    std::vector<std::shared_ptr<const CloudContainer>> apps;
    std::vector<std::string> tagsOfAll;

    [[nodiscard]] std::optional<Data> identityToken() const override { return std::nullopt; }
    [[nodiscard]] std::optional<Error> signIn(const std::string&) override { return std::nullopt; }
    [[nodiscard]] std::optional<Error> signOut() override { return std::nullopt; }
    [[nodiscard]] std::shared_ptr<const CloudContainer> defaultContainer() const override { return top; }
    [[nodiscard]] std::vector<std::shared_ptr<const CloudContainer>> libraries() const override { return apps; }
    [[nodiscard]] std::shared_ptr<const CloudContainer> containerForURL(const URL& url) const override
    {
        for (const auto& app : apps)
            if (app->documentsURL.contains(url))
                return app;
        return top && top->documentsURL.contains(url) ? top : nullptr;
    }
    [[nodiscard]] bool isContainerTopFolder(const URL& url) const override
    {
        const auto container = containerForURL(url);
        return container && container != top && container->documentsURL == url;
    }
    [[nodiscard]] bool isInDrive(const URL& url) const override { return containerForURL(url) != nullptr; }
    [[nodiscard]] bool isInTrash(const URL&) const override { return false; }
    Result<std::vector<std::string>> tagNames(const URL&) const override { return tagsOfAll; }
};

/// Installs a platform that really reads folders, with a drive on a temporary folder: "Drive" is its top folder.
class ListingPlatform {
public:
    explicit ListingPlatform(std::size_t changedNamesLimit = 8192)
    {
        makeReader(changedNamesLimit);
        base_.log.addSink(log);
        base_.mainQueue.setWakeHandler([this] {
            const std::lock_guard lock(mutex_);
            changed_.notify_all();
        });
        cloud.top = container("Drive", "My Drive");
        scope_ = std::make_unique<platform::Scope>(platform::Services{
            .clock = base_.clock,
            .mainQueue = base_.mainQueue,
            .notifications = base_.notifications,
            .log = base_.log,
            .text = text,
            .types = types,
            .files = files,
            .resources = platform::installed().resources,
            .folders = *reader,
            .cloud = cloud,
            .defaults = platform::installed().defaults,
            .device = platform::installed().device,
        });
    }

    [[nodiscard]] std::shared_ptr<const CloudContainer> container(const std::string& folder, const std::string& name)
    {
        return std::make_shared<CloudContainer>(CloudContainer{.identifier = name,
                                                               .documentsURL = drive.folder(folder),
                                                               .localizedName = name,
                                                               .depthOption = {},
                                                               .documentTypes = {},
                                                               .owners = {}});
    }

    void makeReader(std::size_t changedNamesLimit = 8192)
    {
        const FolderServices services{base_.mainQueue, base_.log, text, types, files, cloud};
        reader = std::make_unique<LinuxFolderReader>(services, changedNamesLimit);
    }

    /// Runs the main queue until the condition holds.
    /// @returns whether it held within ten seconds
    bool waitUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (true) {
            base_.mainQueue.runReady();
            if (condition())
                return true;
            if (std::chrono::steady_clock::now() >= deadline)
                return false;
            std::unique_lock lock(mutex_);
            changed_.wait_for(lock, std::chrono::milliseconds(2));
        }
    }

    [[nodiscard]] MainQueue& mainQueue() { return base_.mainQueue; }
    [[nodiscard]] NotificationCenter& notifications() { return base_.notifications; }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    LoggingPlatform base_;

public:
    TemporaryDrive drive;
    std::shared_ptr<LogCapture> log = std::make_shared<LogCapture>();
    PosixFileManager files;
    FewTypes types;
    IcuTextServices text = IcuTextServices("en_GB", embeddedStringTables());
    ListingCloud cloud;
    std::unique_ptr<LinuxFolderReader> reader;

private:
    std::unique_ptr<platform::Scope> scope_;
};

} // namespace tessel
