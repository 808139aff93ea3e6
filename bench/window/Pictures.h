#pragma once

#include "bench/window/Meter.h"

#include <vector>

namespace tessel {

/// Tells "painted", as FirstFrame does, of the first frame that shows each row in the window with its thumbnail, with
/// how many these are ("pictures") and how many programs the window has started ("programs").
class Pictures final : public Meter {
    Q_OBJECT

public:
    /// @param scrolls then goes down to the last row, a little with each frame, and tells how long these took
    Pictures(int rows, bool scrolls) : Meter(rows), scrolls_(scrolls) {}

protected:
    void painted(double since) override;

private:
    [[nodiscard]] int shownPictures() const;
    void tellPictures(int pictures);
    void scroll(double since);

    const bool scrolls_;
    bool isScrolling_ = false;
    std::vector<double> frames_;
};

} // namespace tessel
