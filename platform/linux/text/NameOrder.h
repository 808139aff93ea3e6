#pragma once

#include "platform/linux/text/AsciiNameKeys.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/coll.h>

namespace tessel {

/// The natural order of names in one language (TextServices::compareNames). Opens its collator with the first question;
/// without collation data names are in the order of their bytes. Safe to use from any thread.
class NameOrder {
public:
    explicit NameOrder(std::string locale) : locale_(std::move(locale)) {}

    [[nodiscard]] std::strong_ordering compare(std::string_view left, std::string_view right) const;

    /// The indices of the first `count` names in this order.
    [[nodiscard]] std::vector<std::uint32_t> firstOf(std::span<const std::string_view> names, std::size_t count) const;

private:
    void open() const;
    void appendKey(std::string_view name, std::string& keys) const;
    /// Merges two ordered lists, the second of which is expected to be much shorter, up to `count` indices.
    [[nodiscard]] std::vector<std::uint32_t> merged(std::span<const std::string_view> names,
                                                    std::vector<std::uint32_t> many,
                                                    const std::vector<std::uint32_t>& few, std::size_t count) const;

    std::string locale_;
    mutable std::once_flag opened_;
    mutable std::unique_ptr<const icu::Collator> collator_;
    mutable std::optional<AsciiNameKeys> asciiKeys_;
};

} // namespace tessel
