#pragma once

#include "platform/ui/layout/LinearRow.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessel {

enum class LayoutRelation : std::uint8_t { Equal, AtMost, AtLeast };

/// Solves linear equations and inequalities of which some matter more than others, and keeps the solution current while
/// they come, go and change: the Cassowary simplex method (Badros, Borning and Stuckey 2001).
///
/// Required constraints hold exactly. Of the others the stronger ones are satisfied first, however many weaker ones
/// suffer; among equally strong ones the sum of what is missing, each times its weight, is least. Which of several
/// solutions is taken depends on nothing but the order of the calls.
class LinearSolver {
public:
    static constexpr double kRequired = 1000;

    using Variable = LinearSymbol;
    struct Term {
        Variable variable;
        double coefficient;
    };
    using Constraint = std::size_t;

    [[nodiscard]] Variable addVariable();

    /// Has the sum of the terms be equal to, at most or at least the constant.
    /// @param strength above 0, at most kRequired
    /// @param weight above 0
    /// @returns none, with nothing changed, when it contradicts the required ones.
    [[nodiscard]] std::optional<Constraint> add(std::span<const Term>, LayoutRelation, double constant, double strength,
                                                double weight = 1);
    void remove(Constraint);
    /// Takes effect with the next `solve`.
    void setConstant(Constraint, double constant);

    /// Follows changed constants; to be called before constraints are added or removed, and before values are read.
    /// @returns false when the required constraints contradict each other now; the solver is useless then.
    [[nodiscard]] bool solve();
    [[nodiscard]] double value(Variable) const;

private:
    enum class Kind : std::uint8_t {
        Free,  ///< any amount: a variable
        Slack, ///< not below zero: what is left in an inequality
        Error, ///< not below zero: what is missing in a constraint that is not required
        Dummy, ///< zero: marks a required equation
    };

    struct Record {
        LinearSymbol marker = 0; ///< the symbol by which the tableau knows the constraint
        LinearSymbol other = 0;  ///< another symbol of it, or the marker again
        double side = 0;         ///< of the marker in the constraint's equation, 1 or -1
        double constant = 0;
        double strength = 0;
        double weight = 0;
    };

    /// What is missing in the constraints of one strength, to be made least.
    struct Level {
        double strength;
        LinearRow row;
    };

    struct Step {
        LinearSymbol entering;
        bool grows;
    };

    LinearSymbol addSymbol(Kind);
    void freeSymbol(LinearSymbol);
    [[nodiscard]] bool isRestricted(LinearSymbol symbol) const { return kinds_[symbol] != Kind::Free; }
    [[nodiscard]] bool isPivotable(LinearSymbol symbol) const
    {
        return kinds_[symbol] == Kind::Slack || kinds_[symbol] == Kind::Error;
    }

    LinearRow equation(std::span<const Term>, LayoutRelation, Record&);
    [[nodiscard]] std::optional<LinearSymbol> subject(const LinearRow&, const Record&) const;
    [[nodiscard]] bool enter(LinearRow, const Record&);
    [[nodiscard]] bool enterByArtificial(LinearRow);
    void forget(const Record&);
    void addCost(const Record&, double factor);
    [[nodiscard]] std::optional<LinearSymbol> rowLeavingFor(LinearSymbol marker) const;

    void insertRow(LinearSymbol basic, LinearRow);
    LinearRow takeRow(LinearSymbol basic);
    void addToRow(LinearSymbol basic, const LinearRow&, double factor);
    void substitute(LinearSymbol, const LinearRow&);
    void pivot(LinearSymbol leaving, LinearSymbol entering);
    void noteIfInfeasible(LinearSymbol basic);
    [[nodiscard]] bool isInfeasible(LinearSymbol) const;

    void optimize();
    [[nodiscard]] std::optional<Step> nextStep() const;
    [[nodiscard]] std::optional<Step> stepAt(std::size_t level) const;
    [[nodiscard]] std::optional<LinearSymbol> leaving(const Step&) const;
    [[nodiscard]] std::optional<LinearSymbol> enteringFor(const LinearRow&) const;
    [[nodiscard]] bool isCheaper(const LinearRow::Term&, const LinearRow::Term&) const;
    [[nodiscard]] LinearRow& costs(double strength);

    std::vector<Kind> kinds_;                        // of each symbol
    std::vector<bool> isBasic_;                      // whether the symbol has a row
    std::vector<LinearRow> rows_;                    // what a basic symbol is equal to
    std::vector<std::vector<LinearSymbol>> columns_; // the basic symbols in whose rows a symbol occurs
    std::vector<LinearSymbol> freed_;
    std::vector<Level> levels_; // the strongest first
    std::vector<Record> records_;
    std::vector<Constraint> freedRecords_;
    std::vector<LinearSymbol> infeasible_; // basic symbols that may be other than they may be
    std::vector<LinearRow::Term> scratch_;
};

} // namespace tessel
