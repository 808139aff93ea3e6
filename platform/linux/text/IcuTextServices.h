#pragma once

#include "platform/linux/text/Formatters.h"
#include "platform/linux/text/NameOrder.h"
#include "platform/linux/text/StringTables.h"
#include "platform/text/TextServices.h"

namespace tessel {

/// The user's language by ICU and the program's string tables. Making one costs nothing; every part of ICU is opened
/// by the first question that needs it.
class IcuTextServices : public TextServices {
public:
    /// @param locale as userLocale() names it
    /// @param tables JSON by language, such as embeddedStringTables(); outlives this object
    IcuTextServices(const std::string& locale, const std::map<std::string_view, std::string_view>& tables);

    [[nodiscard]] std::string localized(std::string_view key) const override;
    [[nodiscard]] std::string localizedCount(std::string_view key, std::int64_t count) const override;
    [[nodiscard]] std::string localizedAmount(std::string_view key, double number,
                                              std::string_view amount) const override;
    [[nodiscard]] std::string byteCountNumber(std::uint64_t bytes, ByteCountStyle) const override;
    [[nodiscard]] std::string byteCount(std::uint64_t bytes, ByteCountStyle) const override;
    [[nodiscard]] std::string dateAndTime(Date, DateStyle) const override;
    [[nodiscard]] std::string displayName(std::string_view fileName) const override;
    [[nodiscard]] bool containsCharacter(std::string_view text, CharacterClass) const override;
    [[nodiscard]] std::string trimmed(std::string_view text) const override;
    [[nodiscard]] std::strong_ordering compareNames(std::string_view left, std::string_view right) const override;
    [[nodiscard]] std::vector<std::uint32_t> orderOfNames(std::span<const std::string_view> names) const override;
    [[nodiscard]] std::vector<std::uint32_t> firstOfNames(std::span<const std::string_view> names,
                                                          std::size_t count) const override;
    [[nodiscard]] std::string searchFolded(std::string_view text) const override;
    [[nodiscard]] bool equalIgnoringCase(std::string_view left, std::string_view right) const override;

private:
    std::string locale_;
    StringTables tables_;
    NumberTexts numbers_;
    SizeTexts sizes_;
    DateTexts dates_;
    NameOrder names_;
};

} // namespace tessel
