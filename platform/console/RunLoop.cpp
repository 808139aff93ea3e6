#include "platform/console/RunLoop.h"

#include "platform/base/Platform.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/run/MainQueue.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr auto kNearFuture = std::chrono::seconds(2);

Clock::Ticks now()
{
    return platform::installed().clock.uptime();
}

/// The time until the next delayed task; none without one.
std::optional<Clock::Ticks> untilNextDue()
{
    const auto due = DispatchQueue::main().nextDue();
    if (!due)
        return std::nullopt;
    return std::max(*due - now(), Clock::Ticks::zero());
}

bool isDelayedWorkNear()
{
    const auto wait = untilNextDue();
    return wait && *wait <= kNearFuture;
}

} // namespace

Input RunLoop::nextInput()
{
    for (;;) {
        DispatchQueue::main().runReady();
        if (auto input = source_.next(untilNextDue()); input.kind != Input::Kind::Woken)
            return input;
    }
}

bool RunLoop::runWhileBusy(Clock::Ticks limit)
{
    return runUntilQuiet(limit, DelayedWork::Ignore);
}

bool RunLoop::settle(Clock::Ticks limit)
{
    return runUntilQuiet(limit, DelayedWork::Await);
}

void RunLoop::runFor(Clock::Ticks duration)
{
    const auto deadline = now() + duration;
    while (now() < deadline) {
        DispatchQueue::main().runReady();
        waitForWork(deadline);
    }
    DispatchQueue::main().runReady();
}

bool RunLoop::runUntilQuiet(Clock::Ticks limit, DelayedWork delayed)
{
    const auto deadline = now() + limit;
    for (;;) {
        DispatchQueue::main().runReady();
        const auto shown = ShownControllers::now();
        seeAllRows(shown.list);
        if (!shown.isBusy() && (delayed == DelayedWork::Ignore || !isDelayedWorkNear()))
            return true;
        if (now() >= deadline)
            return false;
        waitForWork(deadline);
    }
}

void RunLoop::seeAllRows(const std::shared_ptr<DocumentListController>& list)
{
    const auto before = seenList_.lock();
    const auto count = list ? list->containedItemCount() : 0;
    if (before == list && count == seenRows_)
        return;
    if (before && before != list)
        before->setVisibleRows(0, 0);
    if (list)
        list->setVisibleRows(0, count);
    seenList_ = list;
    seenRows_ = count;
}

void RunLoop::waitForWork(Clock::Ticks deadline)
{
    const auto limit = std::max(deadline - now(), Clock::Ticks::zero());
    source_.waitForWake(std::min(limit, untilNextDue().value_or(limit)));
}

} // namespace tessel
