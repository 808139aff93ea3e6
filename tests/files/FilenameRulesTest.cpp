#include "files/FileUtils.h"
#include "files/RenamePrompt.h"
#include "files/UIUtils.h"
#include "platform/base/Platform.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

std::string repeated(const std::string& text, std::size_t count)
{
    std::string result;
    while (count-- > 0)
        result += text;
    return result;
}

// What is left of each rule's edge, and names that no rule is about.
const Names& goodNames()
{
    static const Names names = {
        // Letters, marks and digits of many scripts, and twins that only bytes tell apart.
        "a", "Plan", "plan", "PLAN", "Café.txt", "Cafe\u0301.txt", "Ångström", "A\u030Angstro\u0308m", "\u212Bngström",
        "straße", "STRASSE", "İstanbul", "istanbul", "ﬁle", "file", "Ω", "\u2126", "План.txt", "Σχέδιο", "تقرير",
        "תכנית", "योजना", "แผน", "계획", "계획", "計画書.txt", "计划", "ファイル", "ﾌｧｲﾙ", "ＡＢＣ", "𝒫𝓁𝒶𝓃", "𐍈", "𠀀",
        "ꙮ", "ᚠᚢᚦ", "x\u0301\u0302\u0303\u0304", "٣", "Ⅷ", "①",
        // Punctuation that is neither a slash, a colon, nor a dot in front.
        "a.b", "a..b", "a.", "Report.final.v2.doc", "archive.tar.gz", "-", "--help", "~", "~lock", "_", "#1", "50%",
        "%@", "%s%n", "$HOME", "`id`", "a;b", "a|b", "a&b", "a*b", "a?b", "\"a\"", "'a'", "<a>", "[a]", "{a}", "(a)",
        "a\\b", "a,b", "a=b", "a+b", "a!b", "a^b", "@a", "a\u2044b", "a\u2215b", "a\uFF0Fb", "a\uFF1Ab", "a\uA789b",
        "\u2024hidden", "\uFF0Ehidden", "\u00B7a", "…", "“a”", "CON", "nul.txt", "desktop.ini",
        // Blanks inside, of all kinds, and what only looks like one.
        "a b", "a  b", "a\u00A0b", "a\u2003b", "a\u202Fb", "a\u3000b", "a\u3164b", "a\u2800b",
        // Assigned, private and replacement characters at the edges of what is none.
        "\uFFFD", "\uE000", "\uF8FF", "a\U000F0000b", "a\U0010FFFDb", "a\uFDCFb", "a\uFDF0b", "a\u20ACb", "a\u00A1b",
        "a\u007Eb", "a\u034Fb", "a\uFE0Fb", "a\U000E0100b",
        // Emoji of one or more characters that nothing joins.
        "😀", "👍🏽", "🇩🇪", "❤\uFE0F", "1\uFE0F\u20E3", "🫠",
        // As long as a file system lets a name be, in bytes.
        repeated("n", 255), repeated("é", 127) + "n", repeated("計", 85), repeated("😀", 63) + "nnn"};
    return names;
}

const Names& namesWithForbiddenCharacters()
{
    static const Names names = {
        "/", "a/b", "/a", "a/", "a/../b", ":", "a:b", ":a", "a:", "C:\\a",
        // Cc
        "a\0b"s, "\x01", "a\u0007b", "a\tb", "a\u001Bb", "a\u001Fb", "a\u007Fb", "a\u0080b", "a\u009Fb",
        // Line and paragraph ends
        "a\nb", "a\u000Bb", "a\u000Cb", "a\rb", "a\r\nb", "a\u0085b", "a\u2028b", "a\u2029b",
        // Cf: bidirectional marks, embeddings and isolates, joiners, and what else is not seen
        "a\u200Eb", "\u200Fa", "a\u061Cb", "a\u202Ab", "a\u202Bb", "a\u202Cb", "a\u202Db", "gnp\u202Etxt.exe",
        "\u2066a", "a\u2067b", "a\u2068b", "a\u2069", "soft\u00ADhyphen", "a\u200Bb", "a\u200Cb", "a\u2060b",
        "a\u2061b", "a\u2064b", "a\u206Fb", "\uFEFFa", "a\u180Eb", "a\u0600b", "a\u06DDb", "a\u070Fb", "a\u08E2b",
        "a\uFFF9b", "a\uFFFBb", "a\U000110BDb", "a\U0001BCA0b", "a\U0001D173b", "a\U000E0001b",
        // Emoji that are joined or tagged
        "👨\u200D👩\u200D👧", "🏳\uFE0F\u200D🌈", "🏴\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F",
        // Unassigned, and no characters at all
        "a\u0378b", "a\u0530b", "a\u05FFb", "a\u2065b", "a\uFDD0b", "a\uFDEFb", "a\uFFFEb", "a\uFFFFb", "a\U0001FFFEb",
        "a\U0010FFFFb", "a\U00030000\U0003FFFFb", "a\U000E0080b",
        // No UTF-8: a lone byte, a cut character, an overlong slash, half of a surrogate pair, beyond the last one
        "a\xFF", "a\xC3", "a\x80z", "a\xC0\xAFz", "a\xED\xA0\x80z", "a\xF4\x90\x80\x80z"};
    return names;
}

const Names& namesWithADotInFront()
{
    static const Names names = {".", "..", "...", ".hidden", ".a/b", ".a:b", "..a", "../a", ".Trash", ".\u200F"};
    return names;
}

class FilenameRulesTest : public testing::Test {
protected:
    /// Types a name into a prompt, character by character, and tells what the prompt makes of it.
    std::string typed(const std::string& name)
    {
        told.clear();
        prompt->textField->clear();
        for (std::size_t at = 0; at < name.size();) {
            auto end = at + 1;
            while (end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U)
                ++end;
            prompt->textField->setSelection({prompt->textField->text().size(), 0});
            prompt->textField->insertText(name.substr(at, end - at));
            at = end;
        }
        const bool enabled = prompt->defaultAction->enabled();
        EXPECT_EQ(prompt->textField->returnKeyEnabled(), enabled);
        EXPECT_EQ(prompt->errMsgViewController->view().hidden(), message().empty());
        prompt->textField->pressReturn();
        EXPECT_EQ(told, enabled ? Names{name} : Names{}) << "what reaches the callback";
        return enabled ? "valid" : message();
    }
    [[nodiscard]] std::string message() const { return prompt->errMsgViewController->messageLabel->text(); }
    /// Renames a document to the name and back. @returns the error's code; 0 for none
    int renamed(const std::string& name) const
    {
        const auto document = drive.file("document");
        if (const auto error = UIUtils::renameItemAtURL(document, name)) {
            EXPECT_TRUE(std::filesystem::remove(document.path()));
            return error->domain == Domain::General ? error->code : -error->code;
        }
        EXPECT_EQ(std::filesystem::exists(document.path()), name == "document");
        EXPECT_TRUE(std::filesystem::remove(drive.url(name).path()));
        return 0;
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    Names told;
    std::shared_ptr<FilenamePrompt> prompt =
        RenamePrompt::newWithFilename("document", [this](const std::string& name, bool&) {
            told.push_back(name);
            return FilenamePrompt::Text();
        });
};

TEST_F(FilenameRulesTest, LetsGoodNames)
{
    for (const auto& name : goodNames()) {
        EXPECT_EQ(typed(name), "valid") << name;
        EXPECT_EQ(renamed(name), 0) << name;
    }
}

TEST_F(FilenameRulesTest, RefusesForbiddenCharacters)
{
    for (const auto& name : namesWithForbiddenCharacters()) {
        if (name.find_first_of("\n\r") == std::string::npos) { // a field is one line
            EXPECT_EQ(typed(name), "Character not allowed in filename") << testing::PrintToString(name);
        }
        EXPECT_EQ(renamed(name), ErrorCode::kInvalidFileName) << testing::PrintToString(name);
    }
}

TEST_F(FilenameRulesTest, RefusesADotInFront)
{
    for (const auto& name : namesWithADotInFront()) {
        EXPECT_EQ(typed(name), "Choose a different name.") << name;
        EXPECT_EQ(renamed(name), ErrorCode::kInvalidFileName) << name;
    }
}

TEST_F(FilenameRulesTest, LeavesTheLengthToTheFileSystem)
{
    for (const auto& name : {repeated("n", 256), repeated("é", 128), repeated("😀", 64)}) {
        EXPECT_EQ(typed(name), "valid");
        EXPECT_EQ(renamed(name), ErrorCode::kInvalidFileName);
    }
}

TEST_F(FilenameRulesTest, KeepsTwinsApart)
{
    drive.file("Café", "composed");
    drive.file("Cafe\u0301", "decomposed");
    drive.file("cafe", "small");
    EXPECT_EQ(UIUtils::renameItemAtURL(drive.url("cafe"), "Café")->code, ErrorCode::kFileExists);
    EXPECT_EQ(UIUtils::renameItemAtURL(drive.url("cafe"), "Cafe"), std::nullopt);
    EXPECT_EQ(drive.read("Cafe"), "small");
    EXPECT_EQ(drive.read("Café") + drive.read("Cafe\u0301"), "composeddecomposed");
}

TEST_F(FilenameRulesTest, AsksForNothingOfBlanks)
{
    for (const auto* blanks : {"", " ", "\t", "\u00A0\u2003\u3000", " \u2028"}) {
        EXPECT_EQ(typed(blanks), "");
        EXPECT_FALSE(prompt->defaultAction->enabled());
    }
    EXPECT_GE(goodNames().size() + namesWithForbiddenCharacters().size() + namesWithADotInFront().size(), 150U);
}

} // namespace
} // namespace tessel
