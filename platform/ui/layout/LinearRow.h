#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace tessel {

/// What stands for an amount in the simplex tableau.
using LinearSymbol = std::uint32_t;

/// Amounts this small come from rounding.
[[nodiscard]] inline bool isNearZero(double value)
{
    return std::abs(value) < 1e-8;
}

/// A constant and multiples of symbols, added up. Each symbol occurs once, in ascending order, and none is multiplied
/// by what is near zero.
class LinearRow {
public:
    struct Term {
        LinearSymbol symbol;
        double coefficient;
    };

    double constant = 0;

    [[nodiscard]] const std::vector<Term>& terms() const { return terms_; }
    /// 0 for a symbol that does not occur.
    [[nodiscard]] double coefficient(LinearSymbol) const;
    void add(LinearSymbol, double coefficient);
    /// Adds a multiple of another row. Tells `came` and `went` of the symbols that did not occur before, and that do
    /// not any more.
    template <typename Came, typename Went>
    void add(const LinearRow&, double factor, std::vector<Term>& scratch, const Came& came, const Went& went);
    void add(const LinearRow& other, double factor, std::vector<Term>& scratch)
    {
        add(
            other, factor, scratch, [](LinearSymbol) {}, [](LinearSymbol) {});
    }
    /// Takes the symbol out. @returns its coefficient; 0 for a symbol that does not occur
    double take(LinearSymbol);
    void negate();
    /// Of a row that is equal to zero makes the one that is equal to the symbol, which occurs in it.
    void solveFor(LinearSymbol);

private:
    std::vector<Term> terms_;
};

template <typename Came, typename Went>
void LinearRow::add(const LinearRow& other, double factor, std::vector<Term>& scratch, const Came& came,
                    const Went& went)
{
    constant += other.constant * factor;
    scratch.clear();
    auto own = terms_.begin();
    for (const auto& [symbol, multiple] : other.terms_) {
        while (own != terms_.end() && own->symbol < symbol)
            scratch.push_back(*own++);
        const bool isOwn = own != terms_.end() && own->symbol == symbol;
        const auto sum = multiple * factor + (isOwn ? (own++)->coefficient : 0);
        if (!isNearZero(sum))
            scratch.push_back({symbol, sum});
        if (isOwn && isNearZero(sum))
            went(symbol);
        else if (!isOwn && !isNearZero(sum))
            came(symbol);
    }
    scratch.insert(scratch.end(), own, terms_.end());
    terms_.swap(scratch);
}

} // namespace tessel
