#include "platform/console/RunLoop.h"

#include "platform/apps/ApplicationRegistry.h"
#include "platform/base/Platform.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/run/MainQueue.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr auto kNearFuture = std::chrono::seconds(2);

// That a list has caught up wakes nobody when there was nothing to show of it.
constexpr auto kGlance = std::chrono::milliseconds(5);

// What is ready may go on without an end while another program keeps changing the shown folder.
constexpr auto kLongestBeforeInput = std::chrono::milliseconds(20);
constexpr auto kLongestAfterWait = std::chrono::seconds(1);

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

/// Runs what is ready until nothing is, or until a moment that may have passed: one task runs in any case.
/// @returns whether nothing is ready
bool runReadyUntil(Clock::Ticks deadline)
{
    while (DispatchQueue::main().runOne())
        if (now() >= deadline)
            return false;
    return true;
}

bool isMoreToCome()
{
    const auto wait = untilNextDue();
    return (wait && *wait <= kNearFuture) || DispatchQueue::main().isExpecting() ||
           platform::installed().apps.isAwaitingDocuments();
}

} // namespace

Input RunLoop::nextInput()
{
    for (;;) {
        const bool ranAll = runReadyUntil(now() + kLongestBeforeInput);
        seeAllRows(ShownControllers::now().list);
        const auto timeout = ranAll ? untilNextDue() : Clock::Ticks::zero();
        if (auto input = source_.next(timeout); input.kind != Input::Kind::Woken)
            return input;
    }
}

bool RunLoop::runWhileBusy(Clock::Ticks limit)
{
    return runUntil(Wanted::CompleteScreen, limit);
}

bool RunLoop::settle(Clock::Ticks limit)
{
    return runUntil(Wanted::Quiet, limit);
}

void RunLoop::runFor(Clock::Ticks duration)
{
    const auto deadline = now() + duration;
    while (now() < deadline) {
        if (runReadyUntil(deadline))
            waitForWork(deadline);
    }
    runReadyUntil(now() + kLongestAfterWait); // what is due at the end, and what follows from it
}

bool RunLoop::runUntil(Wanted wanted, Clock::Ticks limit)
{
    const auto start = now();
    const auto deadline = start + limit;
    for (;;) {
        runReadyUntil(deadline);
        const auto shown = ShownControllers::now();
        seeAllRows(shown.list);
        const bool wantsQuiet = wanted == Wanted::Quiet;
        const bool isCatchingUp = wantsQuiet && now() < start + kNearFuture && shown.isCatchingUp();
        if (!isCatchingUp && !shown.isBusy() && !(wantsQuiet && isMoreToCome()))
            return true;
        if (now() >= deadline)
            return false;
        waitForWork(isCatchingUp ? std::min(deadline, now() + kGlance) : deadline);
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
