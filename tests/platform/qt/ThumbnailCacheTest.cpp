#include "platform/qt/thumbnails/ThumbnailCache.h"

#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>

#include <sys/stat.h>

#include <filesystem>

namespace tessel::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

QImage picture(int side, QColor color = Qt::red)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

class ThumbnailCacheTest : public ::testing::Test {
protected:
    static constexpr auto kName = "c6ee772d9e49320e97ec29a7eb5b1697.png"; // the example of the convention

    [[nodiscard]] int modeOf(std::string_view name) const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(drive.url(name).path().c_str(), &status), 0) << name;
        return static_cast<int>(status.st_mode & 07777U);
    }

    [[nodiscard]] std::vector<std::string> namesIn(std::string_view folder) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(drive.url(folder).path()))
            names.push_back(entry.path().filename());
        return names;
    }

    TemporaryDrive drive;
    ThumbnailCache cache{QByteArray::fromStdString(drive.url("cache/thumbnails").path()), "tesseldrive-1"};
    ThumbnailOriginal original{"/home/jens/photos/me.png", 1'700'000'000'999'999'999, 4711};
};

// The expected text is what g_filename_to_uri of GLib 2.74 answers for these bytes.
TEST(ThumbnailOriginalTest, EscapesAddressesAsTheRestOfTheDesktopDoes)
{
    QByteArray path = "/";
    for (int byte = 1; byte < 128; ++byte)
        path += static_cast<char>(byte);
    path += "\xc3\xa4\xff";
    EXPECT_EQ((ThumbnailOriginal{path, 0, 0}.uri().toStdString()),
              "file:///%01%02%03%04%05%06%07%08%09%0A%0B%0C%0D%0E%0F%10%11%12%13%14%15%16%17%18%19%1A%1B%1C%1D%1E%1F"
              "%20!%22%23$%25&'()*+,-./0123456789:%3B%3C=%3E%3F@ABCDEFGHIJKLMNOPQRSTUVWXYZ%5B%5C%5D%5E_%60"
              "abcdefghijklmnopqrstuvwxyz%7B%7C%7D~%7F%C3%A4%FF");
}

TEST(ThumbnailOriginalTest, IsNoneOfWhatIsNoRegularFileWithContent)
{
    const TemporaryDrive drive;
    drive.tree("folder/ empty");
    ASSERT_EQ(::mkfifo(drive.url("pipe").path().c_str(), 0600), 0);
    for (const auto* name : {"folder", "empty", "pipe", "missing"})
        EXPECT_FALSE(ThumbnailOriginal::at(QByteArray::fromStdString(drive.url(name).path()))) << name;
}

TEST_F(ThumbnailCacheTest, KeepsThumbnailsUnderTheSharedNameForTheUserAlone)
{
    ASSERT_TRUE(cache.save(original, ThumbnailSize::Normal, picture(90)));
    EXPECT_THAT(namesIn("cache/thumbnails/normal"), ElementsAre(kName));
    EXPECT_EQ(modeOf("cache/thumbnails"), 0700);
    EXPECT_EQ(modeOf("cache/thumbnails/normal"), 0700);
    EXPECT_EQ(modeOf(std::string("cache/thumbnails/normal/") + kName), 0600);
}

// A reader of the desktop looks at uncompressed chunks alone, and takes the first text of each keyword.
TEST_F(ThumbnailCacheTest, NotesInPlainChunksWhatTheThumbnailIsOfAndNothingFromTheImage)
{
    auto image = picture(90);
    image.setText("Thumb::URI", "file:///etc/passwd");
    image.setText("Author", "somebody");
    original.path = "/home/jens/" + QByteArray(200, 'x') + ".png";
    ASSERT_TRUE(cache.save(original, ThumbnailSize::Large, image));

    const auto file = drive.read("cache/thumbnails/large/" + namesIn("cache/thumbnails/large").front());
    using namespace std::string_literals;
    EXPECT_THAT(file, HasSubstr("tEXtThumb::URI\0file:///home/jens/xxxx"s));
    EXPECT_THAT(file, HasSubstr("\0\0\0\x17tEXtThumb::MTime\0"s
                                "1700000000"));
    EXPECT_THAT(file, HasSubstr("tEXtThumb::Size\0"s
                                "4711"));
    EXPECT_THAT(file, Not(HasSubstr("passwd")));
    EXPECT_THAT(file, Not(HasSubstr("Author")));
    EXPECT_FALSE(cache.find(original, ThumbnailSize::Large).isNull());
}

TEST_F(ThumbnailCacheTest, ServesALargerOneAndNeverASmallerOne)
{
    cache.save(original, ThumbnailSize::Large, picture(256));
    EXPECT_EQ(cache.find(original, ThumbnailSize::Normal).width(), 256);
    EXPECT_EQ(cache.find(original, ThumbnailSize::Large).width(), 256);
    EXPECT_TRUE(cache.find(original, ThumbnailSize::ExtraLarge).isNull());
    cache.save(original, ThumbnailSize::Normal, picture(128));
    EXPECT_EQ(cache.find(original, ThumbnailSize::Normal).width(), 128);
}

TEST_F(ThumbnailCacheTest, TakesNoThumbnailOfWhatWasChanged)
{
    cache.save(original, ThumbnailSize::Normal, picture(128));
    cache.markFailed(original);
    auto sameSecond = original;
    sameSecond.modificationTime -= 500'000'000;
    EXPECT_FALSE(cache.find(sameSecond, ThumbnailSize::Normal).isNull());
    EXPECT_TRUE(cache.hasFailed(sameSecond));

    auto later = original;
    later.modificationTime += 1'000'000'000;
    auto longer = original;
    longer.size += 1;
    for (const auto& changed : {later, longer}) {
        EXPECT_TRUE(cache.find(changed, ThumbnailSize::Normal).isNull());
        EXPECT_FALSE(cache.hasFailed(changed));
    }
}

// Two addresses can have the same MD5; here, another program left a wrong file.
TEST_F(ThumbnailCacheTest, TakesNoThumbnailOfAnotherFileAndNoDamagedOne)
{
    auto other = original;
    other.path = "/home/jens/photos/you.png";
    cache.save(other, ThumbnailSize::Normal, picture(128));
    const auto folder = drive.url("cache/thumbnails/normal").path();
    std::filesystem::rename(folder + '/' + namesIn("cache/thumbnails/normal").front(), folder + '/' + kName);
    EXPECT_TRUE(cache.find(original, ThumbnailSize::Normal).isNull());

    cache.save(original, ThumbnailSize::Normal, picture(128));
    std::filesystem::resize_file(folder + '/' + kName, 300);
    EXPECT_TRUE(cache.find(original, ThumbnailSize::Normal).isNull());
}

TEST_F(ThumbnailCacheTest, MarksFailuresForThisProgramAlone)
{
    ASSERT_TRUE(cache.markFailed(original));
    EXPECT_TRUE(cache.hasFailed(original));
    EXPECT_TRUE(cache.find(original, ThumbnailSize::Normal).isNull());
    EXPECT_THAT(namesIn("cache/thumbnails/fail/tesseldrive-1"), ElementsAre(kName));
    const ThumbnailCache newer(QByteArray::fromStdString(drive.url("cache/thumbnails").path()), "tesseldrive-2");
    EXPECT_FALSE(newer.hasFailed(original));
}

TEST_F(ThumbnailCacheTest, LeavesNothingBehindWhenItCannotKeepOne)
{
    drive.tree(std::string("cache/thumbnails/normal/") + kName + "/in-the-way cache/thumbnails/large");
    EXPECT_FALSE(cache.save(original, ThumbnailSize::Normal, picture(128)));
    EXPECT_FALSE(cache.save(original, ThumbnailSize::Large, picture(256)));
    EXPECT_THAT(namesIn("cache/thumbnails/normal"), ElementsAre(kName));
}

} // namespace
} // namespace tessel::qt
