#include "platform/linux/text/IcuTextServices.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/UserLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace tessel {

namespace {

const std::map<std::string_view, std::string_view> kTables = {
    {"en", R"({"Zero KB": "Zero KB", "Select": "Select", "only": "English only",
               ".DICT.ITEMS.%d": {"one": "%d item", "other": "%d items"},
               ".DICT.FILES.%d": {"one": "%d file", "other": "%d files"}})"},
    {"pl",
     R"({".DICT.ITEMS.%d": {"one": "%d element", "few": "%d elementy", "many": "%d elementów", "other": "%d elementu"}})"},
    {"ar", R"({".DICT.ITEMS.%d": {"zero": "لا عناصر", "two": "عنصران", "few": "%d عناصر", "other": "%d عنصر"}})"},
    {"ja", R"({".DICT.ITEMS.%d": {"other": "%d項目"}, "Select": "選択", "Zero KB": "0 KB"})"},
    {"pt", R"({"Select": "Selecionar"})"},
    {"pt_PT", R"({"Zero KB": "Zero kB")"},
    {"xx", R"([1, {"Select": 5}])"},
};

/// Sets environment variables and puts back what they were.
class Environment {
public:
    explicit Environment(const std::map<std::string, std::string>& values)
    {
        for (const auto& [name, value] : values) {
            const auto* before = std::getenv(name.c_str());
            before_[name] = before ? std::optional<std::string>(before) : std::nullopt;
            ::setenv(name.c_str(), value.c_str(), 1);
        }
    }
    ~Environment()
    {
        for (const auto& [name, value] : before_)
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    std::map<std::string, std::optional<std::string>> before_;
};

std::string localeFor(const char* all, const char* messages, const char* lang)
{
    const Environment environment({{"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}});
    return userLocale();
}

} // namespace

TEST(UserLocale, IsTheFirstVariableThatIsSet)
{
    EXPECT_EQ(localeFor("de_DE.UTF-8", "fr_FR", "it"), "de_DE");
    EXPECT_EQ(localeFor("", "sr_RS@latin", "it"), "sr_RS");
    EXPECT_EQ(localeFor("", "", "ast"), "ast");
    for (const auto* garbage : {"", "C", "POSIX", "C.UTF-8", "/etc/passwd", "e", "\xff\xfe", "de-DE;rm", "_"})
        EXPECT_EQ(localeFor("", "", garbage), "en") << garbage;
}

TEST(Localized, FallsBackFromTheLocaleToItsLanguageToEnglishToTheKey)
{
    EXPECT_EQ(IcuTextServices("ja_JP", kTables).localized("Select"), "選択");
    EXPECT_EQ(IcuTextServices("ja_JP", kTables).localized("only"), "English only");
    EXPECT_EQ(IcuTextServices("ja_JP", kTables).localized("nowhere"), "nowhere");
    EXPECT_EQ(IcuTextServices("pt_PT", kTables).localized("Select"), "Selecionar") << "its own table is damaged";
    EXPECT_EQ(IcuTextServices("xx", kTables).localized("Select"), "Select");
    EXPECT_EQ(IcuTextServices("en", {}).localizedCount(".DICT.ITEMS.%d", 2), ".DICT.ITEMS.2");
}

TEST(LocalizedCount, TakesThePluralFormAndTheDigitsOfTheLanguage)
{
    const auto items = [](const char* locale, std::int64_t count) {
        return IcuTextServices(locale, kTables).localizedCount(".DICT.ITEMS.%d", count);
    };
    EXPECT_EQ(items("en", 1), "1 item");
    EXPECT_EQ(items("en_US", 0), "0 items");
    EXPECT_EQ(items("pl", 1), "1 element");
    EXPECT_EQ(items("pl", 22), "22 elementy");
    EXPECT_EQ(items("pl", 12), "12 elementów");
    EXPECT_EQ(items("ar_EG", 2), "عنصران");
    EXPECT_EQ(items("ar_EG", 5), "٥ عناصر");
    EXPECT_EQ(items("ja", 1), "1項目");
    // An English text keeps English plurals in a language whose own forms it does not have.
    EXPECT_EQ(IcuTextServices("fr", kTables).localizedCount(".DICT.FILES.%d", 0), "0 files");
}

TEST(PseudoLocale, LengthensAndMirrorsEnglishAndLeavesPlaceholders)
{
    const IcuTextServices text("en_XA", kTables);
    EXPECT_EQ(text.localized("Select"), "[Šéléçt~~~]");
    EXPECT_EQ(text.localized("%1$@ of %@, 100%"), "[%1$@ öf %@, 100%~~~~~]");
    EXPECT_EQ(text.localizedCount(".DICT.ITEMS.%d", 3), "[3 îtémš~~~]");
    EXPECT_TRUE(isRightToLeft("en_XA"));
}

TEST(EmbeddedTables, SpeakEnglish)
{
    const IcuTextServices text("en", embeddedStringTables());
    EXPECT_EQ(text.localizedCount(".DICT.ITEMS.%d", 1), "1 item");
    EXPECT_EQ(text.localizedCount(".DICT.ITEMS.%d", 3), "3 items");
    EXPECT_EQ(text.byteCount(0, ByteCountStyle::File), "Zero KB");
}

struct Size {
    std::uint64_t bytes;
    const char* decimal;
    const char* binary;
};

class ByteCountTest : public testing::TestWithParam<Size> {};

TEST_P(ByteCountTest, IsRoundedAsSizesAreRead)
{
    const IcuTextServices text("en", kTables);
    EXPECT_EQ(text.byteCount(GetParam().bytes, ByteCountStyle::File), GetParam().decimal);
    EXPECT_EQ(text.byteCount(GetParam().bytes, ByteCountStyle::Binary), GetParam().binary);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ByteCountTest,
    testing::Values(Size{0, "Zero KB", "Zero KB"}, Size{1, "1 byte", "1 byte"}, Size{999, "999 bytes", "999 bytes"},
                    Size{1000, "1 KB", "1,000 bytes"}, Size{1499, "1 KB", "1 KB"}, Size{1500, "2 KB", "1 KB"},
                    Size{999'499, "999 KB", "976 KB"}, Size{999'500, "1 MB", "976 KB"},
                    Size{1'048'063, "1 MB", "1,023 KB"}, Size{1'048'064, "1 MB", "1 MB"},
                    Size{1'249'999, "1.2 MB", "1.2 MB"}, Size{3'000'000, "3 MB", "2.9 MB"},
                    Size{999'949'999, "999.9 MB", "953.6 MB"}, Size{999'950'000, "1 GB", "953.6 MB"},
                    Size{2'344'999'999, "2.34 GB", "2.18 GB"}, Size{1'050'000'000'000, "1.05 TB", "977.89 GB"},
                    Size{UINT64_MAX, "18,446.74 PB", "16,384 PB"}));

TEST(LocalizedAmount, TakesThePluralFormOfTheNumber)
{
    const std::map<std::string_view, std::string_view> tables = {
        {"fr", R"({"A.%g": {"one": "%2$@ disponible", "other": "%2$@ disponibles"}})"}};
    const IcuTextServices text("fr", tables);
    EXPECT_EQ(text.localizedAmount("A.%g", 1.5, "1,5 Go"), "1,5 Go disponible") << "one and a half is singular";
    EXPECT_EQ(text.localizedAmount("A.%g", 2, "2 Go"), "2 Go disponibles");
    EXPECT_EQ(text.byteCountNumber(1'610'612'736, ByteCountStyle::Binary), "1,5");
    EXPECT_EQ(IcuTextServices("en", tables).byteCountNumber(0, ByteCountStyle::Binary), "Zero");
}

TEST(ByteCount, SpeaksTheLanguage)
{
    EXPECT_EQ(IcuTextServices("de", kTables).byteCount(1'200'000, ByteCountStyle::File), "1,2 MB");
    EXPECT_EQ(IcuTextServices("fr", kTables).byteCount(2, ByteCountStyle::File), "2\u00a0octets");
    EXPECT_EQ(IcuTextServices("fr", kTables).byteCount(1'200'000, ByteCountStyle::File), "1,2\u202fMo");
    EXPECT_EQ(IcuTextServices("ja", kTables).byteCount(0, ByteCountStyle::File), "0 KB");
}

TEST(DateAndTime, AlwaysTellsTheTimeAndNeverAnotherDay)
{
    const IcuTextServices text("de_DE", kTables);
    const Date lastNanosecondOf1969{-1};
    const Date date{1'700'000'000'123'456'789};
    EXPECT_THAT(text.dateAndTime(date, DateStyle::None), testing::MatchesRegex("[0-9][0-9]:[0-9][0-9]"));
    EXPECT_THAT(text.dateAndTime(date, DateStyle::Short), testing::MatchesRegex("1[45].11.23, [0-9][0-9]:[0-9][0-9]"));
    EXPECT_THAT(text.dateAndTime(date, DateStyle::Long), testing::HasSubstr(". November 2023"));
    EXPECT_NE(text.dateAndTime(lastNanosecondOf1969, DateStyle::None), text.dateAndTime({}, DateStyle::None));
}

TEST(DisplayName, IsOneHonestLineOfUtf8)
{
    const IcuTextServices text("en", kTables);
    EXPECT_EQ(text.displayName("Grüße 日本.txt"), "Grüße 日本.txt");
    EXPECT_EQ(text.displayName("a\xff\xc3(b"), "a\uFFFD\uFFFD(b");
    EXPECT_EQ(text.displayName("a\nb\tc\x7f\x1b[31m"), "a\u240Ab\u2409c\u2421\u241B[31m");
    EXPECT_EQ(text.displayName("a\u0085b\u2028c\u009Bd"), "a\u2424b\u2424c\uFFFDd");
    EXPECT_EQ(text.displayName("photo\u202Egpj.exe"), "photo\uFFFDgpj.exe");
}

TEST(SearchFolded, ForgetsCaseAccentsAndCompatibility)
{
    const IcuTextServices text("en", kTables);
    EXPECT_EQ(text.searchFolded("Report.PDF"), "report.pdf");
    EXPECT_EQ(text.searchFolded("Éte\u0301 STRASSE straße ﬁn Ａ İ"), "ete strasse strasse fin a i");
    EXPECT_EQ(text.searchFolded("한글"), "한글");
}

TEST(EqualIgnoringCase, KnowsCanonicalEquivalentsAndTurkish)
{
    const IcuTextServices english("en", kTables), turkish("tr_TR", kTables);
    EXPECT_TRUE(english.equalIgnoringCase("ÉTÉ", "e\u0301te\u0301"));
    EXPECT_FALSE(english.equalIgnoringCase("ete", "été"));
    EXPECT_TRUE(english.equalIgnoringCase("TITLE", "title"));
    EXPECT_FALSE(turkish.equalIgnoringCase("TITLE", "title"));
    EXPECT_FALSE(english.equalIgnoringCase("a\xff", "a\xfe")) << "two files, whatever stands for their bytes";
}

// The search runs on a worker while the list is shown: parts that open themselves may be asked first by either.
TEST(IcuTextServices, MayBeAskedByTwoThreadsFirst)
{
    const IcuTextServices text("en", kTables);
    const auto ask = [&](std::string& answer) {
        answer = text.localizedCount(".DICT.ITEMS.%d", 7) + text.byteCount(5'000, ByteCountStyle::File) +
                 text.dateAndTime({}, DateStyle::Short) + (text.compareNames("a2", "a10") < 0 ? "<" : ">");
    };
    std::string first, second;
    std::thread other(ask, std::ref(first));
    ask(second);
    other.join();
    EXPECT_EQ(first, second);
    EXPECT_THAT(first, testing::StartsWith("7 items5 KB"));
}

} // namespace tessel
