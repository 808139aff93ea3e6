#include "platform/qt/EventLoop.h"

#include "platform/run/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

#include <algorithm>
#include <limits>
#include <mutex>

namespace tessel::qt {

namespace {

constexpr auto kLongestTurn = std::chrono::milliseconds(4);

QEvent::Type wakeEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

/// What the wake handler shares with the loop: other threads call it until the queue is gone.
struct EventLoop::Waker {
    void wake()
    {
        const std::lock_guard lock(mutex);
        if (loop && !std::exchange(isPosted, true))
            QCoreApplication::postEvent(loop, new QEvent(wakeEvent()));
    }

    std::mutex mutex;
    EventLoop* loop = nullptr;
    bool isPosted = false;
};

EventLoop::EventLoop(MainQueue& queue, const Clock& clock)
    : queue_(queue), clock_(clock), waker_(std::make_shared<Waker>())
{
    waker_->loop = this;
    queue.setWakeHandler([waker = waker_] { waker->wake(); });
    waker_->wake(); // for what was added before
}

EventLoop::~EventLoop()
{
    const std::lock_guard lock(waker_->mutex);
    waker_->loop = nullptr;
}

bool EventLoop::event(QEvent* event)
{
    if (event->type() == wakeEvent()) {
        {
            const std::lock_guard lock(waker_->mutex);
            waker_->isPosted = false;
        }
        drain();
        return true;
    }
    if (event->type() == QEvent::Timer) {
        drain();
        return true;
    }
    return QObject::event(event);
}

void EventLoop::drain()
{
    const auto end = std::chrono::steady_clock::now() + kLongestTurn;
    bool isMoreReady = true;
    do
        isMoreReady = queue_.runOne();
    while (isMoreReady && std::chrono::steady_clock::now() < end);
    waitForNextTask(isMoreReady);
}

// A timer of no length lets Qt look at the user's input and at its frames before the next turn; an event would not.
void EventLoop::waitForNextTask(bool isMoreReady)
{
    const auto due = queue_.nextDue();
    if (!isMoreReady && !due) {
        timer_.stop();
        return;
    }
    const auto wait = isMoreReady ? Clock::Ticks::zero() : std::max(*due - clock_.uptime(), Clock::Ticks::zero());
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
    timer_.start(static_cast<int>(std::min<std::int64_t>(milliseconds, std::numeric_limits<int>::max())),
                 Qt::PreciseTimer, this);
}

} // namespace tessel::qt
