#pragma once

#include "platform/run/Clock.h"

#include <QBasicTimer>
#include <QObject>

#include <memory>

namespace tessel {

class MainQueue;

namespace qt {

/// Drains the main queue inside Qt's event loop: a few milliseconds at a time, so that frames keep coming while there
/// is much to do, and without a wake-up while there is nothing.
class EventLoop final : public QObject {
    Q_OBJECT

public:
    /// Becomes the queue's wake handler, so it is made before other threads run; they may outlive it.
    EventLoop(MainQueue&, const Clock&);
    ~EventLoop() override;

    bool event(QEvent*) override;
    /// Does what is ready, for a few milliseconds at most.
    void drain();

private:
    struct Waker;

    void waitForNextTask(bool isMoreReady);

    MainQueue& queue_;
    const Clock& clock_;
    QBasicTimer timer_;
    const std::shared_ptr<Waker> waker_;
};

} // namespace qt
} // namespace tessel
