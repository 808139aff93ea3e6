#pragma once

#include "platform/base/Date.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

enum class DateStyle { None, Short, Medium, Long };

/// Decimal: 1 KB is 1000 bytes, as files are counted. Binary: 1 KB is 1024 bytes, as storage is.
enum class ByteCountStyle { File, Binary };

/// Characters that are asked for together, as Unicode has them.
enum class CharacterClass {
    Illegal, ///< unassigned, no character at all, or no UTF-8
    Control, ///< of the categories Cc and Cf, among them what joins and directs others
    Newline, ///< U+000A to U+000D, U+0085, U+2028, U+2029
};

/// The user's language: texts, numbers, sizes, dates and the order of names. All texts are UTF-8. Safe to use from any
/// thread; nothing changes after it was made.
class TextServices {
public:
    virtual ~TextServices() = default;

    /// The text for a key of the main table; the key itself when no table has it.
    [[nodiscard]] virtual std::string localized(std::string_view key) const = 0;

    /// The text for a key such as ".DICT.ITEMS.%d", in the plural form that `count` takes (CLDR plural rules), with the
    /// count in the language's digits.
    [[nodiscard]] virtual std::string localizedCount(std::string_view key, std::int64_t count) const = 0;

    /// The text for a key such as ".DICT.AVAILABLE.%g", in the plural form that the number takes, in which the amount,
    /// as it is shown, has taken the place of "%2$@".
    [[nodiscard]] virtual std::string localizedAmount(std::string_view key, double number,
                                                      std::string_view amount) const = 0;

    /// "1.2 MB": a number and its unit, rounded as sizes are read: whole bytes and kilobytes, one decimal for
    /// megabytes, two above.
    [[nodiscard]] virtual std::string byteCount(std::uint64_t bytes, ByteCountStyle) const = 0;
    /// The same without the unit.
    [[nodiscard]] virtual std::string byteCountNumber(std::uint64_t bytes, ByteCountStyle) const = 0;

    /// The date in the user's language and time zone, always with the short time; only the time for DateStyle::None.
    [[nodiscard]] virtual std::string dateAndTime(Date, DateStyle) const = 0;

    /// A file name as it may be shown: valid UTF-8 on one line. Bytes that are no UTF-8 become U+FFFD; control
    /// characters their pictures (U+2400 and on); bidirectional controls, with which a name can lie, U+FFFD.
    [[nodiscard]] virtual std::string displayName(std::string_view fileName) const = 0;

    /// Whether a text has a character of the class.
    [[nodiscard]] virtual bool containsCharacter(std::string_view text, CharacterClass) const = 0;

    /// The text without the blanks (category Zs), tabs and newlines at both its ends.
    [[nodiscard]] virtual std::string trimmed(std::string_view text) const = 0;

    /// Natural order of the language: numbers by value, case and accents last, bytes at the very end, so that only
    /// identical names are equal.
    [[nodiscard]] virtual std::strong_ordering compareNames(std::string_view left, std::string_view right) const = 0;

    /// The indices of `names` in the order of compareNames. Much faster than sorting with it.
    [[nodiscard]] virtual std::vector<std::uint32_t> orderOfNames(std::span<const std::string_view> names) const = 0;

    /// The indices of the first `count` names of that order, for the cost of little more than looking at each name.
    [[nodiscard]] virtual std::vector<std::uint32_t> firstOfNames(std::span<const std::string_view> names,
                                                                  std::size_t count) const = 0;

    /// The form in which a text is searched: without case, accents and compatibility differences (NFKC, CLDR).
    [[nodiscard]] virtual std::string searchFolded(std::string_view text) const = 0;

    /// Whether two texts are equal but for case, in the user's language.
    [[nodiscard]] virtual bool equalIgnoringCase(std::string_view left, std::string_view right) const = 0;
};

} // namespace tessel
