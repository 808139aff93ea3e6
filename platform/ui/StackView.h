#pragma once

#include "platform/ui/View.h"
#include "platform/ui/layout/LayoutConstraint.h"

namespace tessel {

/// Lays its arranged subviews out one behind the other, by constraints that it makes. Which of them grow and shrink to
/// fill its length, their content's priorities say; those without a size of their own go first, and of equals the last.
/// Hidden ones take no room. Constraints of the program that are required matter more than the alignment.
class StackView : public View {
public:
    enum class Axis { Horizontal, Vertical };
    /// Across the axis. The baselines are for rows.
    enum class Alignment { Fill, Leading, Center, Trailing, FirstBaseline, LastBaseline };
    enum class Distribution { Fill, FillEqually }; ///< along the axis

    [[nodiscard]] Axis axis() const { return axis_; }
    void setAxis(Axis axis) { rearrange(axis_, axis); }
    [[nodiscard]] Alignment alignment() const { return alignment_; }
    void setAlignment(Alignment alignment) { rearrange(alignment_, alignment); }
    [[nodiscard]] Distribution distribution() const { return distribution_; }
    void setDistribution(Distribution distribution) { rearrange(distribution_, distribution); }
    [[nodiscard]] double spacing() const { return spacing_; }
    void setSpacing(double points) { rearrange(spacing_, points); }

    [[nodiscard]] const std::vector<std::shared_ptr<View>>& arrangedSubviews() const { return arranged_; }
    /// Also makes it a subview, laid out by constraints.
    void addArrangedSubview(const std::shared_ptr<View>&);
    /// It stays a subview.
    void removeArrangedSubview(const std::shared_ptr<View>&);

    [[nodiscard]] Size sizeThatFits(const Size& available) const override;

protected:
    void updateConstraints() override;
    void willRemoveSubview(const View&) override;

private:
    using Views = std::vector<std::shared_ptr<View>>;

    template <typename T>
    void rearrange(T& property, T value)
    {
        if (assign(property, value))
            setNeedsUpdateConstraints();
    }
    [[nodiscard]] Views shownViews() const;
    [[nodiscard]] bool isRow() const { return axis_ == Axis::Horizontal; }
    template <typename Begin, typename End, typename Length>
    void arrange(const Views&, Begin begin, End end, Length length);
    template <typename Begin, typename End, typename Middle, typename Breadth>
    void align(View&, Begin begin, End end, Middle middle, Breadth breadth);
    void add(const std::shared_ptr<LayoutConstraint>&, double priority = LayoutPriority::kRequired);

    Views arranged_;
    LayoutConstraint::List made_;
    Axis axis_ = Axis::Horizontal;
    Alignment alignment_ = Alignment::Fill;
    Distribution distribution_ = Distribution::Fill;
    double spacing_ = 0;
};

} // namespace tessel
