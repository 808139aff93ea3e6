#include "platform/linux/text/IcuTextServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include <unicode/coll.h>
#include <unicode/ucol.h>
#include <unicode/uset.h>

namespace tessel {

namespace {

using Names = std::vector<std::string_view>;

const std::map<std::string_view, std::string_view> kNoTables;

std::unique_ptr<icu::Collator> numericCollator(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    EXPECT_TRUE(U_SUCCESS(status));
    return collator;
}

int sign(int number)
{
    return (number > 0) - (number < 0);
}

Names inOrder(const TextServices& text, const Names& names)
{
    Names ordered;
    for (const auto index : text.orderOfNames(names))
        ordered.push_back(names[index]);
    return ordered;
}

/// Makes names that are likely to collide: few letters, both cases, zeros, long numbers, ignored characters.
class NameMaker {
public:
    explicit NameMaker(unsigned seed) : random_(seed) {}

    std::string name(bool ascii)
    {
        std::string name;
        for (auto pieces = below(7); pieces > 0; --pieces)
            name += piece(ascii);
        return name;
    }

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_()) % end; }

    std::string piece(bool ascii)
    {
        static const std::vector<std::string> kForeign = {"é",    "É",    "e\u0301", "日本", "ß",
                                                          "\xff", "\xc3", "א",       "１２", "ж"};
        switch (below(ascii ? 6 : 8)) {
        case 0:
            return std::string(below(3), '0') + std::to_string(below(200));
        case 1:
            return {static_cast<char>(below(128))};
        case 2:
            return below(40) == 0 ? std::string(250 + below(10), "0019"[below(4)]) : " ";
        case 3:
            return std::to_string(random_() % 100'000'000'000);
        case 4:
            return {"-._~"[below(4)]};
        case 5:
            return {"aAbBwW"[below(6)]};
        default:
            return kForeign[below(static_cast<unsigned>(kForeign.size()))];
        }
    }

    std::mt19937_64 random_;
};

std::vector<std::string> someNames(unsigned count, unsigned seed, unsigned percentAscii)
{
    NameMaker maker(seed);
    std::vector<std::string> names;
    for (unsigned i = 0; i < count; ++i)
        names.push_back(maker.name(i % 100 < percentAscii));
    return names;
}

void expectSameOrder(const AsciiNameKeys& keys, const icu::Collator& collator, const std::string& left,
                     const std::string& right)
{
    std::string leftKey, rightKey;
    keys.append(left, leftKey);
    keys.append(right, rightKey);
    UErrorCode status = U_ZERO_ERROR;
    ASSERT_EQ(sign(leftKey.compare(rightKey)), collator.compareUTF8(left, right, status))
        << testing::PrintToString(left) << " and " << testing::PrintToString(right);
}

void expectSameOrder(const AsciiNameKeys& keys, const icu::Collator& collator, int pairs)
{
    NameMaker maker(20261122);
    for (int i = 0; i < pairs && !testing::Test::HasFatalFailure(); ++i)
        expectSameOrder(keys, collator, maker.name(true), maker.name(true));
}

bool isAsciiSequence(const UChar* text, std::int32_t length)
{
    return length > 1 && std::all_of(text, text + length, [](UChar unit) { return unit < 128; });
}

bool hasAsciiSequences(const icu::Collator& collator)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeSet sequences, expansions;
    ucol_getContractionsAndExpansions(reinterpret_cast<const UCollator*>(&collator), sequences.toUSet(),
                                      expansions.toUSet(), true, &status);
    const auto* set = sequences.addAll(expansions).toUSet();
    for (std::int32_t item = uset_getRangeCount(set); item < uset_getItemCount(set); ++item) {
        UChar text[64];
        UChar32 start = 0, end = 0;
        if (isAsciiSequence(text, uset_getItem(set, item, &start, &end, text, 64, &status)))
            return true;
    }
    return false;
}

} // namespace

class AsciiNameKeysTest : public testing::TestWithParam<const char*> {};

TEST_P(AsciiNameKeysTest, CompareAsTheCollatorDoes)
{
    const auto collator = numericCollator(GetParam());
    const auto keys = AsciiNameKeys::copiedFrom(*collator);
    ASSERT_TRUE(keys);
    expectSameOrder(*keys, *collator, 30'000);
}

INSTANTIATE_TEST_SUITE_P(Languages, AsciiNameKeysTest,
                         testing::Values("en", "de", "fr", "pl", "ja", "ar", "th", "ru", "mt", "tr", "zh"),
                         [](const auto& instance) { return std::string(instance.param); });

// The tables may be used only where the collator, its root included, knows no sequences of ASCII characters at all.
TEST(AsciiNameKeysLanguages, ServeMostLanguagesAndNoneThatOrdersSequencesOfLetters)
{
    std::int32_t count = 0;
    const auto* locales = icu::Collator::getAvailableLocales(count);
    int served = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        SCOPED_TRACE(locales[i].getName());
        const auto collator = numericCollator(locales[i]);
        const auto keys = AsciiNameKeys::copiedFrom(*collator);
        if (!keys)
            continue;
        ++served;
        EXPECT_FALSE(hasAsciiSequences(*collator));
        expectSameOrder(*keys, *collator, 300);
    }
    EXPECT_GT(served, count * 2 / 3);
    EXPECT_FALSE(AsciiNameKeys::copiedFrom(*numericCollator("cs")));
}

// The collator cuts a number after 254 digits and forgets the zeros before what is left.
TEST(AsciiNameKeysNumbers, AreCutWhereTheCollatorCutsThem)
{
    std::vector<std::string> names;
    for (const std::size_t length : {62U, 63U, 64U, 65U, 253U, 254U, 255U, 508U})
        for (const auto* rest : {"", "0", "1", "2", "01", "001", "10", "x"})
            names.push_back(std::string(length, '7') + rest);
    const auto collator = numericCollator("en");
    const auto keys = AsciiNameKeys::copiedFrom(*collator);
    for (const auto& left : names)
        for (const auto& right : names)
            expectSameOrder(*keys, *collator, left, right);
}

TEST(NameOrder, IsWhatPeopleExpect)
{
    const IcuTextServices english("en", kNoTables);
    EXPECT_THAT(inOrder(english, {"b", "a10", "A2", "a2", "a1", "a01", "B", "Å", "a 1", "_a", ""}),
                testing::ElementsAre("", "_a", "Å", "a 1", "a01", "a1", "a2", "A2", "a10", "b", "B"));
    const IcuTextServices danish("da", kNoTables);
    EXPECT_THAT(inOrder(danish, {"Aabenraa", "Zoo", "Bog"}), testing::ElementsAre("Bog", "Zoo", "Aabenraa"));
}

// Names that no text is, and names that differ by ignored characters only, must still have one place each.
TEST(NameOrder, IsTheOrderOfCompareNamesForEveryMixtureOfNames)
{
    for (const auto* locale : {"en", "da", "ja"}) {
        const IcuTextServices text(locale, kNoTables);
        for (const unsigned percentAscii : {0U, 50U, 99U, 100U}) {
            const auto strings = someNames(2'000, percentAscii + 1, percentAscii);
            const Names names(strings.begin(), strings.end());
            auto expected = names;
            std::sort(expected.begin(), expected.end(),
                      [&](auto left, auto right) { return text.compareNames(left, right) < 0; });
            ASSERT_EQ(inOrder(text, names), expected) << locale << " " << percentAscii;

            for (const std::size_t count : {0U, 1U, 50U, 1'999U, 5'000U}) {
                const auto all = text.orderOfNames(names);
                const auto first = text.firstOfNames(names, count);
                ASSERT_EQ(first.size(), std::min(count, names.size()));
                for (std::size_t i = 0; i < first.size(); ++i)
                    ASSERT_EQ(names[first[i]], names[all[i]]) << locale << " " << percentAscii << " " << count;
            }
        }
    }
}

TEST(NameOrder, FindsTheFirstAmongNamesWithOneLongBeginning)
{
    const IcuTextServices text("en", kNoTables);
    std::vector<std::string> strings;
    for (int i = 999; i >= 0; --i)
        strings.push_back("Screenshot from the meeting of the committee, page " + std::to_string(i));
    const Names names(strings.begin(), strings.end());
    EXPECT_THAT(text.firstOfNames(names, 3), testing::ElementsAre(999, 998, 997));
}

} // namespace tessel
