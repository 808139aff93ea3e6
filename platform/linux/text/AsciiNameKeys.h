#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <unicode/coll.h>

namespace tessel {

/// Byte keys of ASCII names that compare (memcmp) as a collator compares the names: its order of the 128 characters and
/// its rule for numbers, copied into tables, for a tenth of the cost of a sort key.
///
/// A key is one rank for each character that counts, with numbers as their length and their digits in pairs; then 0;
/// then one bit for each cased letter. Characters that the collator ignores leave nothing.
class AsciiNameKeys {
public:
    /// @param collator with tertiary strength and numeric collation
    /// @returns none when the language orders ASCII by more than single characters (the Danish "aa", the Czech "ch").
    [[nodiscard]] static std::optional<AsciiNameKeys> copiedFrom(const icu::Collator& collator);

    void append(std::string_view asciiName, std::string& keys) const;

private:
    void appendCases(std::string_view asciiName, std::string& keys) const;

    /// 0: ignored.
    std::array<std::uint8_t, 128> ranks_{};
    /// 0: the only character of its rank; 1 and 2: the first and second of two.
    std::array<std::uint8_t, 128> cases_{};
};

[[nodiscard]] bool isAscii(std::string_view text);

} // namespace tessel
