#pragma once

#include "platform/ui/Geometry.h"
#include "platform/ui/layout/LayoutConstraint.h"
#include "platform/ui/layout/LinearSolver.h"

#include <array>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tessel {

class View;

/// Finds the frames of the views of one tree that are laid out by constraints. Each view is a box of four variables
/// from the tree's leading top corner. Frames lie on whole pixels, and contents are rounded up to them.
///
/// Beside the constraints of the program it has its own: the frames of views that the program places itself, what
/// contents ask for, and that no side is below zero, which gives way to what is required only. Of required constraints
/// that contradict each other the last one is left out until it fits, and the log tells of it once.
class LayoutEngine {
public:
    /// @param available what the tree has to fit into; a side that is not above 0 has no end. None: its frame is given.
    explicit LayoutEngine(View& root, std::optional<Size> available = std::nullopt);

    /// That of the view's tree, made when there is none.
    [[nodiscard]] static LayoutEngine& of(View&);
    /// That of the view's tree, to be told of a change; null when there is none yet.
    [[nodiscard]] static LayoutEngine* existing(View&);
    /// Views have come or gone: the next one is made from nothing.
    static void drop(View&);

    void add(const std::shared_ptr<LayoutConstraint>&);
    void remove(const LayoutConstraint&);
    void constantChanged(const LayoutConstraint&);
    /// The frame of a view that the program places itself.
    void frameChanged(const View&);
    /// The size of the content, or where its baselines are.
    void contentChanged(View&);
    /// How much the content matters, or whether there is any.
    void contentAsksAnew(View&);

    /// In the superview's coordinates, of a view below the root that is laid out by constraints.
    [[nodiscard]] Rect frameOf(const View&);
    /// The size of the tree.
    [[nodiscard]] Size size();

private:
    struct Content {
        double size = -1; ///< what was asked for, below 0: nothing
        std::optional<LinearSolver::Constraint> most;
        std::optional<LinearSolver::Constraint> least;
    };
    struct Box {
        View* view;
        std::size_t parent;                              ///< its superview's box; its own of the root
        std::array<LinearSolver::Variable, 4> variables; ///< x, y, width, height; the root's x and y are not used
        std::array<LinearSolver::Constraint, 4> frame;   ///< of a view that the program places itself
        std::array<Content, 2> content;                  ///< along each LayoutAxis
        std::array<bool, 2> isKeptPositive;
    };
    struct Entry {
        std::shared_ptr<LayoutConstraint> constraint;
        std::optional<LinearSolver::Constraint> solved; ///< none while it contradicts others
    };
    using Terms = std::vector<LinearSolver::Term>;

    [[nodiscard]] bool isRoot(const Box& box) const { return box.view == &root_; }
    [[nodiscard]] bool isPlacedByProgram(const Box&) const;
    [[nodiscard]] Box* find(const View&);
    [[nodiscard]] Entry* find(const LayoutConstraint&);
    std::size_t boxOf(View&);

    void build();
    void collect(View&);
    void addEntry(const std::shared_ptr<LayoutConstraint>&);
    void finishBoxes();
    void addFrame(Box&);
    void addFitting(const Box&);
    void addContents(Box&);
    void addContent(Box&, LayoutAxis);
    void removeContent(Content&);
    [[nodiscard]] double contentSize(const Box&, LayoutAxis) const;
    [[nodiscard]] double weight(const View&) const;

    void enter(Entry&);
    void retryLeftOut();
    void reportLeftOut() const;
    static void report(LayoutConstraint&);
    void appendTerms(const LayoutConstraint::Side&, double factor);
    void appendTerm(const Box&, std::size_t variable, double factor);
    [[nodiscard]] std::optional<LinearSolver::Constraint> add(LayoutRelation, double constant, double priority,
                                                              double weight = 1);
    [[nodiscard]] double constantOf(const LayoutConstraint&) const;
    [[nodiscard]] bool isReadyForChange();

    void solve();
    bool keepPositive();
    bool wrapTexts();
    bool setContentSize(Content&, double size);
    [[nodiscard]] double value(const Box&, std::size_t variable) const;
    [[nodiscard]] double toPixel(double points) const;

    View& root_;
    const std::optional<Size> available_;
    bool isRightToLeft_ = false;
    double scale_ = 1; ///< pixels a point
    bool isSolved_ = false;
    bool hasLeftOut_ = false;
    LinearSolver solver_;
    std::vector<Box> boxes_;
    std::unordered_map<const View*, std::size_t> boxNumbers_;
    std::size_t finishedBoxes_ = 0;
    std::vector<Entry> entries_;
    Terms terms_; ///< of the constraint that is being added
};

} // namespace tessel
