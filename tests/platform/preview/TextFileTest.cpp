#include "platform/linux/preview/TextFile.h"

#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <filesystem>
#include <unicode/unistr.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TextFileTest : public testing::Test {
protected:
    /// None for what is no text.
    [[nodiscard]] std::unique_ptr<TextFile> open(std::string_view content) const
    {
        const auto path = drive.file("text", content).path();
        const auto encoding = encodingOfText(content, true);
        return encoding ? std::make_unique<TextFile>(FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
                                                     content.size(), *encoding)
                        : nullptr;
    }

    static TextFile::Extent findAll(TextFile& text)
    {
        auto extent = text.findMore();
        while (!extent.isComplete)
            extent = text.findMore();
        return extent;
    }

    /// The rows of a text of one block.
    [[nodiscard]] TextContent::Rows rowsOf(std::string_view content) const
    {
        const auto text = open(content);
        if (!text)
            return {"no text"};
        findAll(*text);
        return text->readBlock(0);
    }

    TemporaryDrive drive;
};

std::string written(const char* converter, const std::string& text)
{
    const auto unicode = icu::UnicodeString::fromUTF8(text);
    std::string bytes(4 * text.size() + 8, 0);
    bytes.resize(static_cast<std::size_t>(
        unicode.extract(0, unicode.length(), bytes.data(), static_cast<std::uint32_t>(bytes.size()), converter)));
    return bytes;
}

TEST_F(TextFileTest, ReadsWhatOtherProgramsHaveWritten)
{
    const std::string german = "Die Überschrift über größere Häuser ist schön.\r\nZweite Zeile für Käse und Öl.";
    const std::string japanese =
        "これは日本語で書かれた文書です。今日は天気がいいですね。\r\n二行目もあります、読んでください。";
    const std::string russian = "Это документ, который написан по-русски.\r\nВторая строка тоже здесь.";
    const auto halves = [](const std::string& text) {
        const auto end = text.find('\r');
        return ElementsAre(text.substr(0, end), text.substr(end + 2));
    };
    for (const auto* const marked : {"\xEF\xBB\xBF", ""})
        EXPECT_THAT(rowsOf(marked + german), halves(german)) << marked;
    for (const auto* const converter :
         {"UTF-16,version=1", "UTF-16LE", "UTF-16BE", "UTF-32", "UTF-32LE", "UTF-32BE", "windows-1252"})
        EXPECT_THAT(rowsOf(written(converter, german)), halves(german)) << converter;
    for (const auto* const converter : {"UTF-16", "Shift_JIS", "EUC-JP"})
        EXPECT_THAT(rowsOf(written(converter, japanese)), halves(japanese)) << converter;
    for (const auto* const converter : {"windows-1251", "KOI8-R"})
        EXPECT_THAT(rowsOf(written(converter, russian)), halves(russian)) << converter;
}

TEST_F(TextFileTest, WhatIsNoTextIsNotShownAsOne)
{
    std::string noise;
    for (unsigned state = 1; noise.size() < 4000; state = state * 1103515245U + 12345U)
        noise += static_cast<char>(state >> 16U);
    for (const auto& bytes : {std::string("PK\3\4\0\0\0\0", 8), std::string("text\0text", 9), noise,
                              std::string("\x7F"
                                          "ELF\2\1\1"),
                              std::string(300, '\1')})
        EXPECT_THAT(rowsOf(bytes), ElementsAre("no text"));
}

TEST_F(TextFileTest, EveryNewlineEndsALineAndNothingElseDoes)
{
    EXPECT_THAT(rowsOf("a\nb\r\nc\rd\n\n\r\r\ne"), ElementsAre("a", "b", "c", "d", "", "", "", "e"));
    EXPECT_THAT(rowsOf("\n"), ElementsAre(""));
    EXPECT_THAT(rowsOf("a\r"), ElementsAre("a"));
    EXPECT_EQ(findAll(*open("a\nb\n")).lines, 2U);
    EXPECT_EQ(findAll(*open("a\nb")).lines, 2U);
}

TEST_F(TextFileTest, ShowsNothingThatHarms)
{
    EXPECT_THAT(rowsOf("\tif\ta terminal obeys\x1B[2J\x7F"), ElementsAre("    if  a terminal obeys␛[2J␡"));
    EXPECT_THAT(rowsOf("user\u202E = admin\u2066\u0085"), ElementsAre("user\uFFFD = admin\uFFFD\u2424"));
    EXPECT_THAT(rowsOf("שלום\u200F!"), ElementsAre("שלום\u200F!")) << "a mark turns nothing around";
    EXPECT_THAT(rowsOf(std::string("good ") + std::string(2000, 'x') + "\xE2\x82"), SizeIs(3));
}

// One line of the book has no end; its rows together are the line, and no character is taken apart.
TEST_F(TextFileTest, LinesOfAnyLengthAreCutBetweenCharacters)
{
    for (const auto& [converter, letters] : std::initializer_list<std::pair<const char*, const char*>>{
             {"UTF-8", "€ü𝄞x"}, {"UTF-16", "€ü𝄞x"}, {"UTF-32", "€ü𝄞x"}, {"Shift_JIS", "日本語aカナ、の文書です。"}}) {
        std::string line;
        while (line.size() < 30'000)
            line += letters;
        const auto text = open(written(converter, line + "\nend"));
        ASSERT_TRUE(text) << converter;
        EXPECT_EQ(findAll(*text).lines, 2U);
        auto rows = text->readBlock(0);
        ASSERT_GT(rows.size(), 10U);
        EXPECT_EQ(rows.back(), "end");
        rows.pop_back();
        std::string together;
        for (const auto& row : rows)
            together += row;
        EXPECT_EQ(together, line) << converter;
    }
    const auto words = rowsOf(std::string(990, 'a') + " " + std::string(20, 'b'));
    EXPECT_THAT(words, ElementsAre(std::string(990, 'a') + " ", std::string(20, 'b'))) << "between words, if it can be";
}

TEST_F(TextFileTest, RowsAreWhereTheyWereFound)
{
    std::string content;
    for (int line = 0; line < 200'000; ++line)
        content += "line " + std::to_string(line) + (line % 3 == 0 ? "\r\n" : "\n");
    const auto text = open(content);
    const auto extent = findAll(*text);
    EXPECT_EQ(extent.rows, 200'000U);
    EXPECT_TRUE(extent.isWhole);
    for (const std::size_t block : {0U, 1U, 390U, 780U}) {
        const auto rows = text->readBlock(block);
        ASSERT_THAT(rows, SizeIs(256)) << block;
        for (std::size_t row = 0; row < rows.size(); ++row)
            ASSERT_EQ(rows[row], "line " + std::to_string(block * 256 + row));
    }
    EXPECT_THAT(text->readBlock(781), SizeIs(200'000 % 256));
    EXPECT_THAT(text->readBlock(782), IsEmpty());
}

TEST_F(TextFileTest, AFileThatShrinksOrVanishesEndsEarlier)
{
    std::string content;
    for (int line = 0; line < 400'000; ++line)
        content += "a line\n";
    const auto text = open(content);
    EXPECT_FALSE(text->findMore().isComplete);
    std::filesystem::resize_file(drive.url("text").path(), 1000);
    EXPECT_TRUE(text->findMore().isComplete);
    EXPECT_THAT(text->readBlock(0), SizeIs(1000 / 7 + 1));
    EXPECT_THAT(text->readBlock(100), IsEmpty());
    std::filesystem::remove(drive.url("text").path());
    EXPECT_THAT(text->readBlock(0), SizeIs(1000 / 7 + 1));
}

} // namespace
} // namespace tessel
