#include "platform/linux/text/AsciiNameKeys.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <tuple>
#include <vector>

#include <unicode/uniset.h>
#include <unicode/usetiter.h>

namespace tessel {

namespace {

/// What one character is to the collator: the levels of its sort key. Weights are never 0 or 1, which end a level.
struct Weights {
    std::string primary, secondary, tertiary;

    explicit Weights(const icu::Collator& collator, char character)
    {
        const auto text = static_cast<UChar>(character);
        std::array<std::uint8_t, 64> key{};
        const auto length = collator.getSortKey(&text, 1, key.data(), static_cast<std::int32_t>(key.size()));
        std::string* const levels[] = {&primary, &secondary, &tertiary};
        std::size_t level = 0;
        for (auto byte = key.begin(); byte != key.begin() + length - 1 && level < 3; ++byte) {
            if (*byte == 1)
                ++level;
            else
                levels[level]->push_back(static_cast<char>(*byte));
        }
    }

    [[nodiscard]] bool isIgnored() const { return primary.empty() && secondary.empty() && tertiary.empty(); }
};

std::vector<Weights> asciiWeights(const icu::Collator& collator)
{
    std::vector<Weights> weights;
    for (int character = 0; character < 128; ++character)
        weights.emplace_back(collator, static_cast<char>(character));
    return weights;
}

/// The root order has no sequences of ASCII characters, so that a look at what the language adds is enough.
bool ordersAsciiSequences(const icu::Collator& collator)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::UnicodeSet> tailored(collator.getTailoredSet(status));
    if (U_FAILURE(status))
        return true;
    for (icu::UnicodeSetIterator item(*tailored); item.next();) {
        const auto& sequence = item.getString();
        bool ascii = sequence.length() > 1;
        for (std::int32_t i = 0; i < sequence.length(); ++i)
            ascii = ascii && sequence[i] < 128;
        if (ascii)
            return true;
    }
    return false;
}

/// A digit has one collation element without accent. A character whose second level is another has several elements,
/// or an accent.
bool isPlain(const Weights& character, const Weights& digit)
{
    return character.isIgnored() || (!character.primary.empty() && character.secondary == digit.secondary);
}

/// The first byte of a number: from this rank on by the count of its digits, and the last of them for all longer ones,
/// whose count follows.
constexpr std::uint8_t kNumberRanks = 64;
/// The collator cuts longer numbers into numbers of so many digits.
constexpr std::size_t kLongestNumber = 254;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

void appendDigits(std::string_view digits, std::uint8_t rank, std::string& keys)
{
    const auto count = static_cast<std::uint8_t>(digits.size());
    keys.push_back(static_cast<char>(rank + std::min(count, kNumberRanks) - 1));
    if (count >= kNumberRanks)
        keys.push_back(static_cast<char>(count));
    std::size_t i = 0;
    if (count % 2 != 0)
        keys.push_back(static_cast<char>(digits[i++] - '0'));
    for (; i < digits.size(); i += 2)
        keys.push_back(static_cast<char>((digits[i] - '0') * 10 + digits[i + 1] - '0'));
}

void appendNumber(std::string_view digits, std::uint8_t rank, std::string& keys)
{
    while (!digits.empty()) {
        digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size() - 1));
        const auto part = digits.substr(0, kLongestNumber);
        appendDigits(part, rank, keys);
        digits.remove_prefix(part.size());
    }
}

std::size_t endOfNumber(std::string_view name, std::size_t position)
{
    while (position < name.size() && isDigit(name[position]))
        ++position;
    return position;
}

/// The characters that the collator does not ignore, in its order.
std::vector<std::uint8_t> charactersInOrder(const std::vector<Weights>& weights)
{
    std::vector<std::uint8_t> order;
    for (std::uint8_t character = 0; character < weights.size(); ++character)
        if (!weights[character].isIgnored())
            order.push_back(character);
    std::stable_sort(order.begin(), order.end(), [&](auto left, auto right) {
        return std::tie(weights[left].primary, weights[left].tertiary) <
               std::tie(weights[right].primary, weights[right].tertiary);
    });
    return order;
}

/// Groups of characters that differ in case at most, in the collator's order; of the digits only '0'.
std::vector<std::vector<std::uint8_t>> rankedGroups(const std::vector<Weights>& weights)
{
    std::vector<std::vector<std::uint8_t>> groups;
    for (const auto character : charactersInOrder(weights)) {
        if (character > '0' && character <= '9')
            continue;
        if (groups.empty() || weights[groups.back().front()].primary != weights[character].primary)
            groups.emplace_back();
        groups.back().push_back(character);
    }
    return groups;
}

/// Whether a group can be told apart by one bit.
bool isLetterPair(const std::vector<std::uint8_t>& group, const std::vector<Weights>& weights)
{
    return group.size() == 2 && weights[group[0]].tertiary != weights[group[1]].tertiary;
}

} // namespace

std::optional<AsciiNameKeys> AsciiNameKeys::copiedFrom(const icu::Collator& collator)
{
    const auto weights = asciiWeights(collator);
    const auto plain = [&](const Weights& character) { return isPlain(character, weights['0']); };
    if (ordersAsciiSequences(collator) || !std::all_of(weights.begin(), weights.end(), plain))
        return std::nullopt;

    AsciiNameKeys keys;
    std::uint8_t rank = 1;
    for (const auto& group : rankedGroups(weights)) {
        if (group.size() > 1 && !isLetterPair(group, weights))
            return std::nullopt;
        for (const auto character : group)
            keys.ranks_[character] = rank;
        if (group.size() == 2) {
            keys.cases_[group[0]] = 1;
            keys.cases_[group[1]] = 2;
        }
        rank = static_cast<std::uint8_t>(rank + (group.front() == '0' ? kNumberRanks : 1));
    }
    return keys;
}

void AsciiNameKeys::append(std::string_view asciiName, std::string& keys) const
{
    for (std::size_t i = 0; i < asciiName.size();) {
        if (isDigit(asciiName[i])) {
            const auto end = endOfNumber(asciiName, i);
            appendNumber(asciiName.substr(i, end - i), ranks_['0'], keys);
            i = end;
        } else if (const auto rank = ranks_[static_cast<std::uint8_t>(asciiName[i++])]; rank != 0) {
            keys.push_back(static_cast<char>(rank));
        }
    }
    keys.push_back(0);
    appendCases(asciiName, keys);
}

void AsciiNameKeys::appendCases(std::string_view asciiName, std::string& keys) const
{
    unsigned bits = 1; // A leading 1, which leaves the byte when it is full.
    for (const char character : asciiName) {
        const auto letterCase = cases_[static_cast<std::uint8_t>(character)];
        if (letterCase == 0)
            continue;
        bits = bits << 1 | (letterCase - 1U);
        if (bits > 0xFF) {
            keys.push_back(static_cast<char>(bits & 0xFF));
            bits = 1;
        }
    }
    if (bits > 1)
        keys.push_back(static_cast<char>(bits));
}

bool isAscii(std::string_view text)
{
    std::uint64_t bits = 0;
    for (; text.size() >= sizeof bits; text.remove_prefix(sizeof bits)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof word);
        bits |= word;
    }
    for (const char character : text)
        bits |= static_cast<std::uint8_t>(character);
    return (bits & 0x8080808080808080U) == 0;
}

} // namespace tessel
