#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

class MainQueue;
class Progress;

/// The kind of a progress that is about a file.
inline constexpr const char* kProgressKindFile = "file";
/// The key of a progress that can be observed.
inline constexpr const char* kFractionCompletedKey = "fractionCompleted";

/// Told what changes in objects that it observes.
class ProgressObserver {
public:
    virtual ~ProgressObserver() = default;
    virtual void observeValueForKeyPath(std::string_view /*keyPath*/, const std::shared_ptr<Progress>& /*ofObject*/) {}
};

/// How far a piece of work has come, and whether it is still wanted. Made as a shared pointer. Safe from any thread but
/// for the observers, which are added, removed and told on the main thread.
class Progress final : public std::enable_shared_from_this<Progress> {
public:
    Progress(MainQueue& mainQueue, std::string kind) : mainQueue_(mainQueue), kind_(std::move(kind)) {}

    [[nodiscard]] const std::string& kind() const { return kind_; }
    [[nodiscard]] std::int64_t completedUnitCount() const;
    /// 0 while it is not known.
    [[nodiscard]] std::int64_t totalUnitCount() const;
    /// From 0 to 1; 0 while the total is not known.
    [[nodiscard]] double fractionCompleted() const;
    /// Told by the work. Of several changes before the main queue's next turn the observers are told the last.
    void update(std::int64_t completed, std::int64_t total);

    /// Asks the work to stop, which it does at its next step.
    void cancel();
    [[nodiscard]] bool isCancelled() const;

    /// An observer that is gone is left out. @param keyPath kFractionCompletedKey
    void addObserver(const std::shared_ptr<ProgressObserver>&, std::string_view keyPath);
    /// Nothing for one that does not observe.
    void removeObserver(const ProgressObserver&, std::string_view keyPath);

    [[nodiscard]] std::string description() const;

private:
    struct Observation {
        std::weak_ptr<ProgressObserver> observer;
        std::string keyPath;
    };

    void tellObservers();

    MainQueue& mainQueue_;
    const std::string kind_;
    mutable std::mutex mutex_; ///< of all but the observations
    std::int64_t completed_ = 0;
    std::int64_t total_ = 0;
    bool isCancelled_ = false;
    bool isToBeTold_ = false;
    std::vector<Observation> observations_;
};

} // namespace tessel
