#include "platform/ui/layout/LinearSolver.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace tessel {
namespace {

constexpr auto kEqual = LayoutRelation::Equal;
constexpr auto kAtMost = LayoutRelation::AtMost;
constexpr auto kAtLeast = LayoutRelation::AtLeast;
constexpr double kRequired = LinearSolver::kRequired;

using Terms = std::vector<LinearSolver::Term>;

struct Constraint {
    Terms terms;
    LayoutRelation relation;
    double constant;
    double strength;

    [[nodiscard]] double missing(const std::vector<double>& values) const
    {
        double sum = -constant;
        for (const auto& term : terms)
            sum += term.coefficient * values[term.variable];
        return relation == kEqual ? std::abs(sum) : std::max(0.0, relation == kAtMost ? sum : -sum);
    }
};

/// What is missing at each strength, the strongest first.
using Missing = std::map<double, double, std::greater<>>;

Missing missingIn(const std::vector<Constraint>& constraints, const std::vector<double>& values)
{
    Missing missing;
    for (const auto& constraint : constraints)
        missing[constraint.strength] += constraint.missing(values);
    return missing;
}

/// Whether one is better than the other at the strongest level at which they differ.
bool isBetter(const Missing& one, const Missing& other)
{
    for (const auto& [strength, amount] : one)
        if (std::abs(amount - other.at(strength)) > 1e-6)
            return amount < other.at(strength);
    return false;
}

class SolverOf {
public:
    explicit SolverOf(std::size_t variables)
    {
        while (variables-- > 0)
            variables_.push_back(solver.addVariable());
    }

    std::optional<LinearSolver::Constraint> add(const Constraint& one)
    {
        return solver.add(one.terms, one.relation, one.constant, one.strength);
    }
    [[nodiscard]] std::vector<double> values() const
    {
        std::vector<double> values;
        for (const auto variable : variables_)
            values.push_back(solver.value(variable));
        return values;
    }

    LinearSolver solver;

private:
    std::vector<LinearSolver::Variable> variables_;
};

class LinearSolverTest : public testing::Test {
protected:
    /// Whole numbers, so that many constraints meet in one point and contradict by little or not at all.
    int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

    Constraint constraint(std::size_t variables)
    {
        constexpr double kStrengths[] = {1, 250, 750, 999, kRequired};
        Terms terms;
        for (LinearSolver::Variable variable = 0; variable < variables; ++variable)
            if (const auto coefficient = number(-2, 2); coefficient != 0)
                terms.push_back({variable, static_cast<double>(coefficient)});
        return {terms, static_cast<LayoutRelation>(number(0, 2)), static_cast<double>(number(-20, 20)),
                kStrengths[number(0, 4)]};
    }

private:
    std::mt19937 random_{20260727};
};

TEST_F(LinearSolverTest, WeighsByStrengthFirstAndThenBySum)
{
    SolverOf one(1);
    one.add({{{0, 1}}, kEqual, 10, 250});
    one.add({{{0, 1}}, kEqual, 20, 250});
    one.add({{{0, 1}}, kEqual, 21, 250});
    EXPECT_EQ(one.solver.value(0), 20) << "the middle one misses the least in all";
    const auto stronger = one.add({{{0, 1}}, kAtMost, 5, 251});
    EXPECT_EQ(one.solver.value(0), 5) << "however many weaker ones suffer";
    one.solver.setConstant(*stronger, 15);
    EXPECT_TRUE(one.solver.solve());
    EXPECT_EQ(one.solver.value(0), 15);
    one.solver.remove(*stronger);
    EXPECT_EQ(one.solver.value(0), 20);
}

TEST_F(LinearSolverTest, RefusesWhatContradictsAndIsAsBefore)
{
    SolverOf two(2);
    const auto sum = two.add({{{0, 1}, {1, 1}}, kEqual, 100, kRequired});
    const auto least = two.add({{{0, 1}}, kAtLeast, 40, kRequired});
    EXPECT_TRUE(two.add({{{0, 2}, {1, 2}}, kEqual, 200, kRequired})) << "says the same once more";
    EXPECT_FALSE(two.add({{{0, 1}, {1, 1}}, kEqual, 101, kRequired}));
    EXPECT_FALSE(two.add({{{1, 1}}, kAtLeast, 61, kRequired}));
    EXPECT_TRUE(two.add({{{1, 1}}, kEqual, 1000, 1}));
    EXPECT_THAT(two.values(), testing::ElementsAre(40, 60));
    two.solver.setConstant(*least, 30);
    EXPECT_TRUE(two.solver.solve());
    EXPECT_THAT(two.values(), testing::ElementsAre(30, 70));
    two.solver.setConstant(*sum, 90);
    EXPECT_FALSE(two.solver.solve()) << "twice the sum is 200 still";
}

/// The best of all points in which two of the lines meet: one of them is the solution.
Missing bestCorner(const std::vector<Constraint>& constraints)
{
    const auto line = [](const Constraint& one) {
        std::array<double, 3> line{0, 0, one.constant};
        for (const auto& term : one.terms)
            line[term.variable] = term.coefficient;
        return line;
    };
    Missing best;
    for (const auto& one : constraints)
        for (const auto& other : constraints) {
            const auto [a, b, c] = line(one);
            const auto [d, e, f] = line(other);
            const auto determinant = a * e - b * d;
            if (determinant == 0)
                continue;
            const auto missing = missingIn(constraints, {(c * e - b * f) / determinant, (a * f - c * d) / determinant});
            if (best.empty() || isBetter(missing, best))
                best = missing;
        }
    return best;
}

TEST_F(LinearSolverTest, FindsTheBestOfAllCorners)
{
    for (int round = 0; round < 2000; ++round) {
        SolverOf two(2);
        // So that there are corners, and that all that is missing is missing in what is known.
        std::vector<Constraint> kept{{{{0, 1}}, kEqual, 0, 1}, {{{1, 1}}, kEqual, 0, 1}};
        for (const auto& one : kept)
            two.add(one);
        for (int count = number(1, 8); count > 0; --count)
            if (const auto one = constraint(2); two.add(one)) {
                kept.push_back(one);
            } else {
                EXPECT_EQ(one.strength, kRequired);
            }
        const auto missing = missingIn(kept, two.values());
        const auto best = bestCorner(kept);
        EXPECT_FALSE(isBetter(best, missing) || isBetter(missing, best)) << "round " << round;
    }
}

struct Made {
    SolverOf solver;
    std::vector<Constraint> refused;
};

Made madeAtOnce(std::size_t variables, const std::vector<Constraint>& constraints)
{
    Made made{SolverOf(variables), {}};
    for (const auto& one : constraints)
        if (!made.solver.add(one))
            made.refused.push_back(one);
    return made;
}

// However a system came to be, all that is required holds, and it is as good as one that is made at once.
TEST_F(LinearSolverTest, IsAsGoodAfterChangesAsFromTheBeginning)
{
    constexpr std::size_t kVariables = 3;
    int refused = 0;
    int contradicted = 0;
    for (int round = 0; round < 2000; ++round) {
        SolverOf changed(kVariables);
        std::map<LinearSolver::Constraint, Constraint> kept;
        bool holds = true;
        for (int step = number(5, 40); step > 0 && holds; --step) {
            const auto choice = number(0, 9);
            if (kept.empty() || choice < 6) {
                const auto one = constraint(kVariables);
                const auto added = changed.add(one);
                refused += added ? 0 : 1;
                if (added)
                    kept[*added] = one;
                continue;
            }
            const auto which = std::next(kept.begin(), number(0, static_cast<int>(kept.size()) - 1));
            if (choice < 8) {
                changed.solver.remove(which->first);
                kept.erase(which);
            } else {
                which->second.constant = number(-20, 20);
                changed.solver.setConstant(which->first, which->second.constant);
                holds = changed.solver.solve();
            }
        }
        std::vector<Constraint> constraints;
        for (const auto& [number, one] : kept)
            constraints.push_back(one);
        const auto [fresh, refusedAtOnce] = madeAtOnce(kVariables, constraints);
        ASSERT_EQ(refusedAtOnce.empty(), holds) << "round " << round;
        contradicted += holds ? 0 : 1;
        const auto after = missingIn(constraints, changed.values());
        const auto anew = missingIn(constraints, fresh.values());
        EXPECT_TRUE(!holds || (!isBetter(after, anew) && !isBetter(anew, after))) << "round " << round;
    }
    EXPECT_GT(std::min(refused, contradicted), 10) << "too few contradictions to learn from";
}

} // namespace
} // namespace tessel
