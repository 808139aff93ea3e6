#pragma once

#include "platform/ui/View.h"

namespace tessel {

/// Lays its arranged subviews out one behind the other, each as long as its content. What is left of the length, or
/// missing, goes to those without a size of their own, else to the last. Hidden ones take no room.
class StackView : public View {
public:
    enum class Axis { Horizontal, Vertical };
    enum class Alignment { Fill, Leading, Center, Trailing }; ///< across the axis

    [[nodiscard]] Axis axis() const { return axis_; }
    void setAxis(Axis);
    [[nodiscard]] Alignment alignment() const { return alignment_; }
    void setAlignment(Alignment);
    [[nodiscard]] double spacing() const { return spacing_; }
    void setSpacing(double points);

    [[nodiscard]] const std::vector<std::shared_ptr<View>>& arrangedSubviews() const { return arranged_; }
    /// Also makes it a subview.
    void addArrangedSubview(const std::shared_ptr<View>&);
    /// It stays a subview.
    void removeArrangedSubview(const std::shared_ptr<View>&);

    /// None along the axis while an arranged subview has none.
    [[nodiscard]] Size intrinsicContentSize() const override;
    [[nodiscard]] Size sizeThatFits(const Size& available) const override;

protected:
    void layoutSubviews() override;
    void willRemoveSubview(const View&) override;

private:
    using Views = std::vector<std::shared_ptr<View>>;

    [[nodiscard]] Views shownViews() const;
    [[nodiscard]] double along(const Size&) const;
    [[nodiscard]] double across(const Size&) const;
    [[nodiscard]] Size size(double along, double across) const;
    [[nodiscard]] double spaces(const Views&) const;
    [[nodiscard]] double lengthOf(const View&, double across) const;
    [[nodiscard]] std::vector<double> lengths(const Views&, const Size& available) const;
    void fill(std::vector<double>& lengths, const Views&) const;
    void place(View&, double position, double length) const;

    std::vector<std::shared_ptr<View>> arranged_;
    Axis axis_ = Axis::Horizontal;
    Alignment alignment_ = Alignment::Fill;
    double spacing_ = 0;
};

} // namespace tessel
