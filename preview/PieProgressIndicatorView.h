#pragma once

#include "platform/ui/View.h"

namespace tessel {

/// Shows how much of a piece of work is done, as a pie. Never quite empty and never quite full.
class PieProgressIndicatorView : public View {
public:
    PieProgressIndicatorView() = default;
    explicit PieProgressIndicatorView(const Rect& frame) : View(frame) {}

    /// What is done, from 0 to 1.
    [[nodiscard]] float progress() const { return progress_; }
    void setProgress(float progress) { assign(progress_, progress, ViewChange::Drawing); }

    [[nodiscard]] bool drawsItself() const override { return true; }
    void draw(Canvas&) const override;

private:
    float progress_ = 0;
};

} // namespace tessel
