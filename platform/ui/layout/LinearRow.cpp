#include "platform/ui/layout/LinearRow.h"

namespace tessel {

double LinearRow::coefficient(LinearSymbol symbol) const
{
    const auto term = std::ranges::lower_bound(terms_, symbol, {}, &Term::symbol);
    return term != terms_.end() && term->symbol == symbol ? term->coefficient : 0;
}

void LinearRow::add(LinearSymbol symbol, double coefficient)
{
    const auto term = std::ranges::lower_bound(terms_, symbol, {}, &Term::symbol);
    if (term == terms_.end() || term->symbol != symbol) {
        if (!isNearZero(coefficient))
            terms_.insert(term, {symbol, coefficient});
        return;
    }
    term->coefficient += coefficient;
    if (isNearZero(term->coefficient))
        terms_.erase(term);
}

double LinearRow::take(LinearSymbol symbol)
{
    const auto term = std::ranges::lower_bound(terms_, symbol, {}, &Term::symbol);
    if (term == terms_.end() || term->symbol != symbol)
        return 0;
    const auto coefficient = term->coefficient;
    terms_.erase(term);
    return coefficient;
}

void LinearRow::negate()
{
    constant = -constant;
    for (auto& term : terms_)
        term.coefficient = -term.coefficient;
}

void LinearRow::solveFor(LinearSymbol symbol)
{
    const auto factor = -1 / take(symbol);
    constant *= factor;
    for (auto& term : terms_)
        term.coefficient *= factor;
}

} // namespace tessel
