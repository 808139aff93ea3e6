#pragma once

#include "bench/window/Meter.h"

#include <QTimer>

#include <functional>
#include <string>
#include <vector>

namespace tessel {

/// Moves a list once it is complete and at rest, and tells how long its frames took, in milliseconds:
/// - "step": two rows a frame, each frame asked for when the one before is on the screen
/// - "jump": the same, a hundred rows a frame
/// - "flick": the frames while a flick runs out, which come no quicker than the animations' clock ticks (16)
/// - "flick_work": what the processor did for each of these frames
/// each as its mean and its 95th of 100.
class Scrolling final : public Meter {
    Q_OBJECT

public:
    explicit Scrolling(int rows);

protected:
    void painted(double since) override;

private slots:
    void flickEnded();

private:
    using Samples = std::vector<double>;

    void rest();
    void begin();
    void moveBy(double points);
    void flick();
    static void tellSamples(const std::string& name, Samples&);

    QTimer rest_;
    std::function<void(double since)> next_; ///< what to do after a frame
    Samples steps_;
    Samples jumps_;
    Samples flicks_;
    Samples work_;
    double workBefore_ = 0;
    int flicksLeft_ = 0;
};

} // namespace tessel
