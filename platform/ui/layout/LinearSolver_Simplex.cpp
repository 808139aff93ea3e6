#include "platform/ui/layout/LinearSolver.h"

#include <limits>
#include <utility>

namespace tessel {

namespace {

/// Smallest numbers first when symbols are chosen keeps the method from going round in circles (Bland 1977); this many
/// steps are only taken when rounding has undone that.
constexpr int kMostSteps = 10'000;

constexpr double kRounding = 1e-9;

} // namespace

void LinearSolver::insertRow(LinearSymbol basic, LinearRow row)
{
    for (const auto& term : row.terms())
        columns_[term.symbol].push_back(basic);
    rows_[basic] = std::move(row);
    isBasic_[basic] = true;
    noteIfInfeasible(basic);
}

LinearRow LinearSolver::takeRow(LinearSymbol basic)
{
    isBasic_[basic] = false;
    auto row = std::exchange(rows_[basic], {});
    for (const auto& term : row.terms())
        std::erase(columns_[term.symbol], basic);
    return row;
}

void LinearSolver::addToRow(LinearSymbol basic, const LinearRow& row, double factor)
{
    rows_[basic].add(
        row, factor, scratch_, [&](LinearSymbol symbol) { columns_[symbol].push_back(basic); },
        [&](LinearSymbol symbol) { std::erase(columns_[symbol], basic); });
    noteIfInfeasible(basic);
}

/// Puts a row in the place of a symbol that is no longer to be in any.
void LinearSolver::substitute(LinearSymbol symbol, const LinearRow& row)
{
    for (const auto basic : std::exchange(columns_[symbol], {}))
        addToRow(basic, row, rows_[basic].take(symbol));
    for (auto& level : levels_)
        if (const auto factor = level.row.take(symbol); factor != 0)
            level.row.add(row, factor, scratch_);
}

/// Has two symbols change places: the one that had a row, and the one that gets it.
void LinearSolver::pivot(LinearSymbol leaving, LinearSymbol entering)
{
    auto row = takeRow(leaving);
    row.add(leaving, -1);
    row.solveFor(entering);
    substitute(entering, row);
    insertRow(entering, std::move(row));
}

void LinearSolver::noteIfInfeasible(LinearSymbol basic)
{
    if (isInfeasible(basic))
        infeasible_.push_back(basic);
}

bool LinearSolver::isInfeasible(LinearSymbol symbol) const
{
    if (!isBasic_[symbol] || kinds_[symbol] == Kind::Free)
        return false;
    const auto amount = rows_[symbol].constant;
    return amount < -kRounding || (kinds_[symbol] == Kind::Dummy && amount > kRounding);
}

/// From one solution that keeps all constraints that are required to the best one.
void LinearSolver::optimize()
{
    infeasible_.clear();
    for (int steps = 0; steps < kMostSteps; ++steps) {
        const auto step = nextStep();
        const auto leaving = step ? this->leaving(*step) : std::nullopt;
        if (!leaving)
            return;
        pivot(*leaving, step->entering);
        infeasible_.clear();
    }
}

std::optional<LinearSolver::Step> LinearSolver::nextStep() const
{
    for (std::size_t level = 0; level < levels_.size(); ++level)
        if (const auto step = stepAt(level))
            return step;
    return std::nullopt;
}

/// A change of one symbol that costs less here, and nothing at the stronger levels.
std::optional<LinearSolver::Step> LinearSolver::stepAt(std::size_t level) const
{
    const auto costsBefore = [&](LinearSymbol symbol) {
        return std::any_of(levels_.begin(), levels_.begin() + static_cast<std::ptrdiff_t>(level),
                           [&](const Level& stronger) { return stronger.row.coefficient(symbol) != 0; });
    };
    for (const auto& [symbol, cost] : levels_[level].row.terms()) {
        const bool isFree = kinds_[symbol] == Kind::Free;
        if (kinds_[symbol] != Kind::Dummy && (cost < 0 || isFree) && !costsBefore(symbol))
            return Step{symbol, cost < 0};
    }
    return std::nullopt;
}

/// The symbol that is the first to become zero when the entering one changes.
std::optional<LinearSymbol> LinearSolver::leaving(const Step& step) const
{
    std::optional<LinearSymbol> first;
    auto least = std::numeric_limits<double>::infinity();
    for (const auto basic : columns_[step.entering]) {
        const auto coefficient = rows_[basic].coefficient(step.entering);
        if (!isRestricted(basic) || (coefficient < 0) != step.grows)
            continue;
        const auto ratio = rows_[basic].constant / std::abs(coefficient);
        if (ratio < least || (ratio == least && basic < *first)) {
            least = ratio;
            first = basic;
        }
    }
    return first;
}

/// The dual method: the solution is the best still, but for symbols that are too small. A dummy that is not zero has
/// only dummies in its row, so that nothing can be done about it.
bool LinearSolver::solve()
{
    for (int steps = 0; !infeasible_.empty(); ++steps) {
        const auto place = std::ranges::min_element(infeasible_);
        const auto basic = *place;
        if (!isInfeasible(basic)) {
            infeasible_.erase(place);
            continue;
        }
        const auto entering = enteringFor(rows_[basic]);
        if (!entering || steps > kMostSteps)
            return false;
        pivot(basic, *entering);
    }
    return true;
}

std::optional<LinearSymbol> LinearSolver::enteringFor(const LinearRow& row) const
{
    const LinearRow::Term* best = nullptr;
    for (const auto& term : row.terms()) {
        if (kinds_[term.symbol] == Kind::Free)
            return term.symbol;
        if (isPivotable(term.symbol) && term.coefficient > 0 && (!best || isCheaper(term, *best)))
            best = &term;
    }
    return best ? std::optional(best->symbol) : std::nullopt;
}

/// Whether it costs less to make up for what is missing by the left one.
bool LinearSolver::isCheaper(const LinearRow::Term& left, const LinearRow::Term& right) const
{
    for (const auto& level : levels_) {
        const auto difference = level.row.coefficient(left.symbol) / left.coefficient -
                                level.row.coefficient(right.symbol) / right.coefficient;
        if (!isNearZero(difference))
            return difference < 0;
    }
    return false;
}

} // namespace tessel
