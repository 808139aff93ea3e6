#include "platform/linux/text/Formatters.h"

#include <algorithm>

#include <unicode/measunit.h>

namespace tessel {

namespace {

/// A size in one unit: whole * unit + hundredths of it.
struct Amount {
    std::uint64_t whole;
    std::uint64_t hundredths;
    std::size_t unit;
};

/// What one step of the last decimal place is in hundredths, by unit: bytes and KB are whole, MB have tenths.
constexpr std::uint64_t decimalStep(std::size_t unit)
{
    return unit < 2 ? 100 : unit == 2 ? 10 : 1;
}

/// Rounds half up, in integers: no size up to 2^64 - 1 loses a digit.
Amount amountIn(std::size_t unit, std::uint64_t unitSize, std::uint64_t bytes)
{
    const auto step = decimalStep(unit);
    const auto steps = 100 / step;
    const auto rounded = (bytes % unitSize * steps + unitSize / 2) / unitSize * step;
    return {bytes / unitSize + rounded / 100, rounded % 100, unit};
}

/// The size in the largest unit of which it is at least one after rounding.
Amount amountOf(std::uint64_t bytes, std::uint64_t base, std::size_t units)
{
    std::uint64_t unitSize = 1;
    std::size_t unit = 0;
    auto amount = amountIn(unit, unitSize, bytes);
    while (amount.whole >= base && unit + 1 < units)
        amount = amountIn(++unit, unitSize *= base, bytes);
    return amount;
}

constexpr std::uint64_t baseOf(ByteCountStyle style)
{
    return style == ByteCountStyle::File ? 1000 : 1024;
}

std::string decimal(const Amount& amount)
{
    const auto hundredths = std::to_string(amount.hundredths);
    return std::to_string(amount.whole) + (amount.hundredths < 10 ? ".0" : ".") + hundredths;
}

icu::MeasureUnit measureUnit(std::size_t unit)
{
    using icu::MeasureUnit;
    const std::array units = {MeasureUnit::getByte(),     MeasureUnit::getKilobyte(), MeasureUnit::getMegabyte(),
                              MeasureUnit::getGigabyte(), MeasureUnit::getTerabyte(), MeasureUnit::getPetabyte()};
    return units[unit];
}

} // namespace

std::string SizeTexts::text(std::uint64_t bytes, ByteCountStyle style) const
{
    const auto amount = amountOf(bytes, baseOf(style), kUnits);
    const auto number = decimal(amount);
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter(amount.unit).formatDecimal(number, status).toString(status).toUTF8String(text);
    if (U_FAILURE(status))
        return std::to_string(bytes);
    // Sizes are written with a capital K, which CLDR keeps for 1024.
    if (const auto kilo = text.find("kB"); kilo != std::string::npos)
        text[kilo] = 'K';
    return text;
}

std::string SizeTexts::number(std::uint64_t bytes, ByteCountStyle style) const
{
    std::call_once(none_.opened, [&] {
        none_.formatter = icu::number::NumberFormatter::withLocale(icu::Locale(locale_.c_str()))
                              .precision(icu::number::Precision::maxFraction(2));
    });
    const auto number = decimal(amountOf(bytes, baseOf(style), kUnits));
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    none_.formatter.formatDecimal(number, status).toString(status).toUTF8String(text);
    return U_FAILURE(status) ? number : text;
}

const icu::number::LocalizedNumberFormatter& SizeTexts::formatter(std::size_t unit) const
{
    auto& own = units_[unit];
    std::call_once(own.opened, [&] {
        own.formatter = icu::number::NumberFormatter::withLocale(icu::Locale(locale_.c_str()))
                            .unit(measureUnit(unit))
                            .unitWidth(unit == 0 ? UNUM_UNIT_WIDTH_FULL_NAME : UNUM_UNIT_WIDTH_SHORT)
                            .precision(icu::number::Precision::maxFraction(2));
    });
    return own.formatter;
}

} // namespace tessel
