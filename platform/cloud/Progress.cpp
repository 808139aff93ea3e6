#include "platform/cloud/Progress.h"

#include "platform/run/MainQueue.h"

#include <algorithm>
#include <utility>

namespace tessel {

std::int64_t Progress::completedUnitCount() const
{
    const std::lock_guard lock(mutex_);
    return completed_;
}

std::int64_t Progress::totalUnitCount() const
{
    const std::lock_guard lock(mutex_);
    return total_;
}

double Progress::fractionCompleted() const
{
    const std::lock_guard lock(mutex_);
    return total_ > 0 ? static_cast<double>(completed_) / static_cast<double>(total_) : 0;
}

void Progress::update(std::int64_t completed, std::int64_t total)
{
    {
        const std::lock_guard lock(mutex_);
        if (completed == completed_ && total == total_)
            return;
        completed_ = completed;
        total_ = total;
        if (std::exchange(isToBeTold_, true))
            return;
    }
    mainQueue_.async([self = shared_from_this()] { self->tellObservers(); });
}

void Progress::cancel()
{
    const std::lock_guard lock(mutex_);
    isCancelled_ = true;
}

bool Progress::isCancelled() const
{
    const std::lock_guard lock(mutex_);
    return isCancelled_;
}

void Progress::addObserver(const std::shared_ptr<ProgressObserver>& observer, std::string_view keyPath)
{
    observations_.push_back({observer, std::string(keyPath)});
}

void Progress::removeObserver(const ProgressObserver& observer, std::string_view keyPath)
{
    const auto found = std::find_if(observations_.begin(), observations_.end(), [&](const Observation& observation) {
        return observation.observer.lock().get() == &observer && observation.keyPath == keyPath;
    });
    if (found != observations_.end())
        observations_.erase(found);
}

std::string Progress::description() const
{
    const std::lock_guard lock(mutex_);
    return "<Progress " + kind_ + " " + std::to_string(completed_) + "/" + std::to_string(total_) + ">";
}

void Progress::tellObservers()
{
    {
        const std::lock_guard lock(mutex_);
        isToBeTold_ = false;
    }
    const auto observations = observations_; // one may end, or end another
    for (const auto& [observer, keyPath] : observations)
        if (const auto told = observer.lock(); told && keyPath == kFractionCompletedKey)
            told->observeValueForKeyPath(keyPath, shared_from_this());
}

} // namespace tessel
