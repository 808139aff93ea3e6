#pragma once

#include "platform/text/TextServices.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include <unicode/datefmt.h>
#include <unicode/numberformatter.h>

namespace tessel {

/// Numbers in the digits of a language. Safe to use from any thread, like the two below; each opens what it needs from
/// ICU with the first question.
class NumberTexts {
public:
    explicit NumberTexts(std::string locale) : locale_(std::move(locale)) {}

    [[nodiscard]] std::string text(std::int64_t number) const;

private:
    std::string locale_;
    mutable std::once_flag opened_;
    mutable icu::number::LocalizedNumberFormatter formatter_;
};

/// Sizes other than zero, as TextServices::byteCount tells them.
class SizeTexts {
public:
    explicit SizeTexts(std::string locale) : locale_(std::move(locale)) {}

    [[nodiscard]] std::string text(std::uint64_t bytes, ByteCountStyle) const;
    /// Without the unit.
    [[nodiscard]] std::string number(std::uint64_t bytes, ByteCountStyle) const;

private:
    static constexpr std::size_t kUnits = 6; ///< Byte to petabyte.
    struct Unit {
        std::once_flag opened;
        icu::number::LocalizedNumberFormatter formatter;
    };

    [[nodiscard]] const icu::number::LocalizedNumberFormatter& formatter(std::size_t unit) const;

    std::string locale_;
    mutable std::array<Unit, kUnits> units_;
    mutable Unit none_; ///< a number alone
};

/// Dates in the time zone that the process has at the first question.
class DateTexts {
public:
    explicit DateTexts(std::string locale) : locale_(std::move(locale)) {}

    [[nodiscard]] std::string text(Date, DateStyle) const;

private:
    [[nodiscard]] icu::DateFormat* formatter(DateStyle) const;

    std::string locale_;
    mutable std::mutex mutex_; ///< A date formatter calculates inside itself.
    mutable std::array<std::unique_ptr<icu::DateFormat>, 4> formatters_;
};

} // namespace tessel
