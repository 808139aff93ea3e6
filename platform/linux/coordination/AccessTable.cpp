#include "platform/linux/coordination/AccessTable.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tessel {

namespace {

// How often the clock is looked at by one who waits.
constexpr auto kGlance = std::chrono::milliseconds(20);

bool areInConflict(const std::vector<AccessWish>& left, const std::vector<AccessWish>& right)
{
    return std::ranges::any_of(left, [&](const AccessWish& mine) {
        return std::ranges::any_of(right, [&](const AccessWish& theirs) { return areInConflict(mine, theirs); });
    });
}

} // namespace

AccessTable::Turn::~Turn()
{
    if (table_)
        table_->leave(request_);
}

std::optional<AccessTable::Turn> AccessTable::enter(std::vector<AccessWish> wishes, Clock::Ticks deadline)
{
    const auto thread = std::this_thread::get_id();
    std::unique_lock lock(mutex_);
    const bool mayOvertake = holds(thread);
    const auto request = requests_.insert(requests_.end(), {std::move(wishes), thread});
    while (const auto* obstacle = obstacleOf(*request, mayOvertake)) {
        if (obstacle->thread == thread || clock_.uptime() >= deadline) {
            requests_.erase(request);
            left_.notify_all();
            return std::nullopt;
        }
        left_.wait_for(lock, kGlance);
    }
    request->isHeld = true;
    return Turn(*this, request);
}

bool AccessTable::isHeldByThisThread() const
{
    const std::lock_guard lock(mutex_);
    return holds(std::this_thread::get_id());
}

bool AccessTable::holds(std::thread::id thread) const
{
    return std::ranges::any_of(requests_, [&](const Request& other) { return other.isHeld && other.thread == thread; });
}

const AccessTable::Request* AccessTable::obstacleOf(const Request& request, bool mayOvertake) const
{
    bool isEarlier = true;
    for (const auto& other : requests_) {
        if (&other == &request)
            isEarlier = false;
        else if ((other.isHeld || (isEarlier && !mayOvertake)) && areInConflict(other.wishes, request.wishes))
            return &other;
    }
    return nullptr;
}

void AccessTable::leave(Requests::iterator request)
{
    {
        const std::lock_guard lock(mutex_);
        requests_.erase(request);
    }
    left_.notify_all();
}

} // namespace tessel
