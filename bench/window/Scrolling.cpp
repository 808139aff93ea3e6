#include "bench/window/Scrolling.h"

#include <QQuickItem>

#include <algorithm>
#include <ctime>
#include <numeric>
#include <string>

namespace tessel {

namespace {

constexpr int kRest = 700; ///< milliseconds without a frame
constexpr std::size_t kSteps = 400;
constexpr std::size_t kJumps = 100;
constexpr int kFlicks = 12;
constexpr double kFlickSpeed = -6000; ///< points a second

double processorMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

Scrolling::Scrolling(int rows) : Meter(rows)
{
    rest_.setSingleShot(true);
    rest_.setInterval(kRest);
    connect(&rest_, &QTimer::timeout, this, &Scrolling::rest);
}

void Scrolling::painted(double since)
{
    if (next_)
        next_(since);
    else
        rest_.start();
}

void Scrolling::rest()
{
    if (!isShown())
        return;
    if (steps_.empty())
        begin();
    else
        flick();
}

void Scrolling::begin()
{
    next_ = [this, isFirst = true](double since) mutable {
        // The first frame comes after a rest.
        auto& samples = steps_.size() < kSteps ? steps_ : jumps_;
        if (!std::exchange(isFirst, false))
            samples.push_back(since);
        if (jumps_.size() == kJumps) {
            next_ = nullptr;
            flicksLeft_ = kFlicks;
            return rest_.start();
        }
        moveBy(steps_.size() < kSteps ? 120 : 6000);
    };
    moveBy(1);
}

void Scrolling::moveBy(double points)
{
    auto* const moved = list();
    moved->setProperty("contentY", moved->property("contentY").toDouble() + points);
}

void Scrolling::flick()
{
    if (flicksLeft_-- == 0) {
        tellSamples("step", steps_);
        tellSamples("jump", jumps_);
        tellSamples("flick", flicks_);
        tellSamples("flick_work", work_);
        return end();
    }
    workBefore_ = processorMilliseconds();
    next_ = [this, isFirst = true](double since) mutable {
        const auto now = processorMilliseconds();
        if (!std::exchange(isFirst, false)) {
            flicks_.push_back(since);
            work_.push_back(now - workBefore_);
        }
        workBefore_ = now;
    };
    auto* const moved = list();
    connect(moved, SIGNAL(movementEnded()), this, SLOT(flickEnded()), Qt::ConnectionType(Qt::UniqueConnection));
    QMetaObject::invokeMethod(moved, "flick", Q_ARG(double, 0), Q_ARG(double, kFlickSpeed));
}

void Scrolling::flickEnded()
{
    next_ = nullptr;
    rest_.start();
}

void Scrolling::tellSamples(const std::string& name, Samples& samples)
{
    std::sort(samples.begin(), samples.end());
    const auto count = static_cast<double>(samples.size());
    tell((name + "_frames").c_str(), count);
    tell((name + "_mean").c_str(), std::accumulate(samples.begin(), samples.end(), 0.0) / count);
    tell((name + "_p95").c_str(), samples[static_cast<std::size_t>(0.95 * count)]);
}

} // namespace tessel
