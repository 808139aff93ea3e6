#pragma once

#include "platform/ui/layout/LayoutAnchor.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

struct ViewLayout;

/// How much a constraint matters: above 0; from kRequired on it holds in any case.
namespace LayoutPriority {
inline constexpr double kRequired = LinearSolver::kRequired;
inline constexpr double kHigh = 750;
inline constexpr double kLow = 250;
inline constexpr double kFitting = 50;
} // namespace LayoutPriority

/// One relation between anchors of two views, or between one anchor and a number. Made by an anchor, as a shared
/// pointer; main thread only.
///
/// While it is active, the closest view that holds both views, or is one of them, holds it. It ends being active when
/// one of them leaves that view.
class LayoutConstraint : public std::enable_shared_from_this<LayoutConstraint> {
public:
    struct Side {
        std::shared_ptr<ViewLayout> layout; ///< null on the right of a constraint with a number
        LayoutAttribute attribute = LayoutAttribute::Width;
    };

    LayoutConstraint(Side first, LayoutRelation, Side second, double multiplier, double constant);
    LayoutConstraint(const LayoutConstraint&) = delete;
    LayoutConstraint& operator=(const LayoutConstraint&) = delete;

    [[nodiscard]] const Side& first() const { return first_; }
    [[nodiscard]] const Side& second() const { return second_; }
    [[nodiscard]] LayoutRelation relation() const { return relation_; }
    [[nodiscard]] double multiplier() const { return multiplier_; }

    [[nodiscard]] double constant() const { return constant_; }
    void setConstant(double points);
    [[nodiscard]] double priority() const { return priority_; }
    void setPriority(double);

    [[nodiscard]] bool isActive() const { return !holder_.expired(); }
    /// Activating needs a view that holds both views; without one it stays inactive, and the log tells.
    void setActive(bool);

    using List = std::vector<std::shared_ptr<LayoutConstraint>>;
    static void activate(const List&);
    static void deactivate(const List&);

    /// "InfoView.width <= DetailsView.width - 16", for the log.
    [[nodiscard]] std::string description() const;

private:
    friend class LayoutEngine;
    friend class View;

    [[nodiscard]] View* commonAncestor() const;
    [[nodiscard]] View* holder() const;
    void addToHolder();
    void takeFromHolder();

    const Side first_;
    const Side second_;
    const LayoutRelation relation_;
    const double multiplier_;
    double constant_;
    double priority_ = LayoutPriority::kRequired;
    std::weak_ptr<ViewLayout> holder_;
    std::uint64_t order_ = 0;  ///< of activation, among all constraints
    bool wasReported_ = false; ///< the log tells of its contradiction once
};

/// The constraint with another priority, for the place where it is made.
[[nodiscard]] std::shared_ptr<LayoutConstraint> withPriority(double, std::shared_ptr<LayoutConstraint>);

} // namespace tessel
