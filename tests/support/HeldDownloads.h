#pragma once

#include "platform/files/FileCoordinationService.h"

#include <condition_variable>
#include <mutex>

namespace tessel {

/// Coordination whose downloads stand at one half until a test lets them go on; else as the installed one.
class HeldDownloads final : public FileCoordinationService {
public:
    explicit HeldDownloads(FileCoordinationService& service) : service_(service) {}

    std::optional<Error> read(const URL& url, const FileCoordinator::Progress& progress, const FilePresenter* asker,
                              const Access& access) override
    {
        const auto held = [&](std::uint64_t, std::uint64_t total) {
            std::unique_lock lock(mutex_);
            ++waiting_;
            while (isHeld_ && progress(total / 2, total) == OnProgress::Continue)
                changed_.wait_for(lock, std::chrono::milliseconds(1));
            --waiting_;
            return isHeld_ ? OnProgress::Cancel : progress(total, total);
        };
        return service_.read(url, held, asker, access);
    }
    std::optional<Error> write(std::span<const WriteIntent> intents, const FilePresenter* asker,
                               const Access& access) override
    {
        return service_.write(intents, asker, access);
    }
    void itemWillMove(const URL& from, const URL& to) override { service_.itemWillMove(from, to); }
    void itemDidMove(const URL& from, const URL& to, const FilePresenter* asker) override
    {
        service_.itemDidMove(from, to, asker);
    }
    void addPresenter(FilePresenter& presenter) override { service_.addPresenter(presenter); }
    void removePresenter(const FilePresenter& presenter) override { service_.removePresenter(presenter); }

    void release()
    {
        const std::lock_guard lock(mutex_);
        isHeld_ = false;
        changed_.notify_all();
    }
    [[nodiscard]] int waiting() const
    {
        const std::lock_guard lock(mutex_);
        return waiting_;
    }

private:
    FileCoordinationService& service_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool isHeld_ = true;
    int waiting_ = 0;
};

} // namespace tessel
