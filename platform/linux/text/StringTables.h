#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/plurrule.h>

namespace tessel {

/// The texts of one language, from JSON: { key: text } and, for texts that a number governs, { key: { plural form: text
/// } } with the CLDR names of the forms ("one", "few", "other"). What is damaged is missing; nothing fails.
class StringTable {
public:
    StringTable(std::string_view language, std::string_view json);

    [[nodiscard]] const std::string* text(std::string_view key) const;
    /// The text for a count, with its placeholder; the form "other" when the right one is missing.
    [[nodiscard]] const std::string* text(std::string_view key, double count) const;

private:
    using Forms = std::map<std::string, std::string, std::less<>>;

    [[nodiscard]] std::string pluralForm(double count) const;

    std::string language_;
    std::map<std::string, std::string, std::less<>> texts_;
    std::map<std::string, Forms, std::less<>> countedTexts_;
    mutable std::once_flag opened_;
    mutable std::unique_ptr<const icu::PluralRules> rules_;
};

/// The tables that serve a locale, best first: its own, its language's, English. Read with the first question. Safe to
/// use from any thread.
class StringTables {
public:
    /// @param tables JSON by language; outlives this object
    StringTables(std::string locale, const std::map<std::string_view, std::string_view>& tables)
        : locale_(std::move(locale)), tables_(tables)
    {
    }

    /// The text, or the key itself.
    [[nodiscard]] std::string text(std::string_view key) const;
    /// The text in the plural form for a count, with its placeholders still in it; or the key itself.
    [[nodiscard]] std::string text(std::string_view key, double count) const;

private:
    [[nodiscard]] std::string shown(std::string_view text) const;
    [[nodiscard]] const std::vector<std::unique_ptr<const StringTable>>& chain() const;

    std::string locale_;
    const std::map<std::string_view, std::string_view>& tables_;
    mutable std::once_flag opened_;
    mutable std::vector<std::unique_ptr<const StringTable>> chain_;
};

} // namespace tessel
