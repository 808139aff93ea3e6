#include "platform/ui/layout/LinearSolver.h"

#include <limits>
#include <utility>

namespace tessel {

LinearSolver::Variable LinearSolver::addVariable()
{
    return addSymbol(Kind::Free);
}

std::optional<LinearSolver::Constraint> LinearSolver::add(std::span<const Term> terms, LayoutRelation relation,
                                                          double constant, double strength, double weight)
{
    Record record{0, 0, 0, constant, strength, weight};
    auto row = equation(terms, relation, record);
    if (!enter(std::move(row), record)) {
        forget(record);
        optimize(); // the attempt has left the best solution
        return std::nullopt;
    }
    optimize();
    if (freedRecords_.empty()) {
        records_.push_back(record);
        return records_.size() - 1;
    }
    const auto place = freedRecords_.back();
    freedRecords_.pop_back();
    records_[place] = record;
    return place;
}

void LinearSolver::remove(Constraint constraint)
{
    const auto record = std::exchange(records_[constraint], Record());
    freedRecords_.push_back(constraint);
    addCost(record, -1);
    if (!isBasic_[record.marker])
        if (const auto leaving = rowLeavingFor(record.marker))
            pivot(*leaving, record.marker);
    if (isBasic_[record.marker])
        takeRow(record.marker);
    forget(record);
    optimize();
}

void LinearSolver::setConstant(Constraint constraint, double constant)
{
    auto& record = records_[constraint];
    const auto shift = record.side * (record.constant - constant);
    record.constant = constant;
    if (shift == 0)
        return;
    if (isBasic_[record.marker]) {
        rows_[record.marker].constant -= shift;
        noteIfInfeasible(record.marker);
        return;
    }
    for (const auto basic : columns_[record.marker]) {
        rows_[basic].constant += shift * rows_[basic].coefficient(record.marker);
        noteIfInfeasible(basic);
    }
}

double LinearSolver::value(Variable variable) const
{
    return isBasic_[variable] ? rows_[variable].constant : 0;
}

LinearSymbol LinearSolver::addSymbol(Kind kind)
{
    if (!freed_.empty()) {
        const auto symbol = freed_.back();
        freed_.pop_back();
        kinds_[symbol] = kind;
        return symbol;
    }
    kinds_.push_back(kind);
    isBasic_.push_back(false);
    rows_.emplace_back();
    columns_.emplace_back();
    return static_cast<LinearSymbol>(kinds_.size() - 1);
}

/// Takes what rounding has left of it out of the tableau.
void LinearSolver::freeSymbol(LinearSymbol symbol)
{
    if (isBasic_[symbol])
        takeRow(symbol);
    for (const auto basic : std::exchange(columns_[symbol], {}))
        rows_[basic].take(symbol);
    for (auto& level : levels_)
        level.row.take(symbol);
    freed_.push_back(symbol);
}

/// The constraint as a row that is equal to zero, in symbols that have no rows.
LinearRow LinearSolver::equation(std::span<const Term> terms, LayoutRelation relation, Record& record)
{
    LinearRow row;
    row.constant = -record.constant;
    for (const auto& [variable, coefficient] : terms) {
        if (isBasic_[variable])
            row.add(rows_[variable], coefficient, scratch_);
        else
            row.add(variable, coefficient);
    }
    const bool isRequired = record.strength >= kRequired;
    const bool isEquation = relation == LayoutRelation::Equal;
    record.side = relation == LayoutRelation::AtMost || (isRequired && isEquation) ? 1 : -1;
    record.marker = addSymbol(!isEquation ? Kind::Slack : isRequired ? Kind::Dummy : Kind::Error);
    record.other = isRequired ? record.marker : addSymbol(Kind::Error);
    row.add(record.marker, record.side);
    if (!isRequired)
        row.add(record.other, -record.side);
    if (row.constant < 0)
        row.negate();
    return row;
}

/// The symbol that the row can be solved for without any other becoming too small.
std::optional<LinearSymbol> LinearSolver::subject(const LinearRow& row, const Record& record) const
{
    const auto isFree = [this](LinearSymbol symbol) { return !isRestricted(symbol); };
    for (const auto& term : row.terms())
        if (isFree(term.symbol) && std::ranges::all_of(columns_[term.symbol], isFree))
            return term.symbol;
    for (const auto symbol : {record.marker, record.other})
        if (isPivotable(symbol) && row.coefficient(symbol) < 0)
            return symbol;
    return std::nullopt;
}

bool LinearSolver::enter(LinearRow row, const Record& record)
{
    auto solved = subject(row, record);
    if (!solved && std::ranges::all_of(row.terms(), [&](auto& term) { return kinds_[term.symbol] == Kind::Dummy; })) {
        if (!isNearZero(row.constant))
            return false;
        solved = record.marker;
    }
    if (solved) {
        row.solveFor(*solved);
        substitute(*solved, row);
        insertRow(*solved, std::move(row));
    } else if (!enterByArtificial(std::move(row))) {
        return false;
    }
    addCost(record, 1);
    return true;
}

/// Enters what has no subject as the row of an artificial symbol, which is then made zero before anything else. Where
/// that cannot be, its row alone is taken away, and no other row has ever held anything of it.
bool LinearSolver::enterByArtificial(LinearRow row)
{
    const auto artificial = addSymbol(Kind::Slack);
    levels_.insert(levels_.begin(), {std::numeric_limits<double>::infinity(), row});
    insertRow(artificial, std::move(row));
    optimize();
    const bool isZero = !isBasic_[artificial] || isNearZero(rows_[artificial].constant);
    levels_.erase(levels_.begin());
    if (isZero && isBasic_[artificial]) {
        const auto& terms = rows_[artificial].terms();
        const auto entering =
            std::ranges::find_if(terms, [&](auto& term) { return kinds_[term.symbol] != Kind::Dummy; });
        if (!terms.empty())
            pivot(artificial, (entering != terms.end() ? entering : terms.begin())->symbol);
    }
    freeSymbol(artificial);
    return isZero;
}

/// No row holds anything of the constraint any more.
void LinearSolver::forget(const Record& record)
{
    freeSymbol(record.marker);
    if (record.other != record.marker)
        freeSymbol(record.other);
}

/// Has what is missing in the constraint count, or count no more.
void LinearSolver::addCost(const Record& record, double factor)
{
    if (record.strength >= kRequired)
        return;
    auto& row = costs(record.strength);
    for (const auto symbol : {record.marker, record.other}) {
        if (kinds_[symbol] != Kind::Error)
            continue;
        if (isBasic_[symbol])
            row.add(rows_[symbol], factor * record.weight, scratch_);
        else
            row.add(symbol, factor * record.weight);
    }
}

/// The row whose symbol the marker can take the place of while none becomes too small.
std::optional<LinearSymbol> LinearSolver::rowLeavingFor(LinearSymbol marker) const
{
    for (const bool grows : {true, false})
        if (const auto symbol = leaving({marker, grows}))
            return symbol;
    const auto& users = columns_[marker];
    return users.empty() ? std::nullopt : std::optional(std::ranges::min(users));
}

LinearRow& LinearSolver::costs(double strength)
{
    const auto place = std::ranges::lower_bound(levels_, strength, std::greater(), &Level::strength);
    if (place != levels_.end() && place->strength == strength)
        return place->row;
    return levels_.insert(place, {strength, {}})->row;
}

} // namespace tessel
