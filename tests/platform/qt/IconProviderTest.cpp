#include "platform/qt/images/IconProvider.h"

#include "platform/qt/images/OwnIcons.h"
#include "platform/qt/images/SymbolProvider.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>

namespace tessel::qt {
namespace {

const QColor kThemeColor = Qt::magenta;

// A desktop whose theme has these icons, as bitmaps of one size.
class IconProviderTest : public ::testing::Test {
protected:
    ~IconProviderTest() override
    {
        QIcon::setThemeName(themeBefore_);
        QIcon::setThemeSearchPaths(pathsBefore_);
    }

    void useTheme(std::initializer_list<const char*> names, int side)
    {
        const auto size = std::to_string(side);
        drive.file("Tiles/index.theme",
                   "[Icon Theme]\nName=Tiles\nDirectories=all\n[all]\nType=Fixed\nSize=" + size + "\n");
        drive.folder("Tiles/all");
        QImage icon(side, side, QImage::Format_ARGB32);
        icon.fill(kThemeColor);
        for (const auto* name : names)
            ASSERT_TRUE(icon.save(QString::fromStdString(drive.url("Tiles/all/").path()) + "/" + name + ".png"));
        QIcon::setThemeSearchPaths({QString::fromStdString(drive.url().path())});
        QIcon::setThemeName("Tiles");
    }

    [[nodiscard]] QPixmap icon(const char* id, int side = 48)
    {
        QSize size;
        auto pixmap = provider.requestPixmap(id, &size, {side, side});
        EXPECT_EQ(size, QSize(side, side)) << id;
        return pixmap;
    }

    [[nodiscard]] bool isOfTheme(const char* id, int side = 48)
    {
        const auto image = icon(id, side).toImage();
        return image.pixelColor(image.rect().center()) == kThemeColor;
    }

    TemporaryDrive drive;
    IconProvider provider;

private:
    const QString themeBefore_ = QIcon::themeName();
    const QStringList pathsBefore_ = QIcon::themeSearchPaths();
};

TEST_F(IconProviderTest, TakesTheThemesIconsAndItsCommonestForWhatItDoesNotKnow)
{
    useTheme({"folder", "text-x-generic", "image-x-generic"}, 48);
    EXPECT_TRUE(isOfTheme("image-png|image-x-generic?file"));
    EXPECT_TRUE(isOfTheme("unheard-of?file"));
    EXPECT_TRUE(isOfTheme("folder?folder"));
    EXPECT_FALSE(isOfTheme("library?library"));
}

TEST_F(IconProviderTest, TakesNoneOfAThemeThatLacksTheCommonestIcons)
{
    useTheme({"folder", "image-x-generic"}, 48);
    EXPECT_FALSE(isOfTheme("folder?folder"));
    EXPECT_FALSE(isOfTheme("image-x-generic?file"));
}

TEST_F(IconProviderTest, TakesNoneThatWouldBeTooSmall)
{
    useTheme({"folder", "text-x-generic"}, 32);
    EXPECT_TRUE(isOfTheme("folder?folder", 32));
    EXPECT_FALSE(isOfTheme("folder?folder", 96));
}

TEST_F(IconProviderTest, DrawsEachIconOnce)
{
    EXPECT_EQ(icon("unheard-of%7Caudio-x-generic?file").toImage(), icon("audio-x-generic?file").toImage());
    EXPECT_EQ(icon("folder?folder").cacheKey(), icon("folder?folder").cacheKey());
    EXPECT_NE(icon("folder?folder").cacheKey(), icon("folder?folder", 96).cacheKey());
}

TEST(OwnIconsTest, HaveOneForEveryNameAndKind)
{
    const auto path = [](const char* names, const char* kind) {
        return ownIconPath(QString(names).split('|'), kind).section('/', -1).chopped(4).toStdString();
    };
    EXPECT_EQ(path("application-pdf|x-office-document", "file"), "application-pdf");
    EXPECT_EQ(path("image-svg+xml", "file"), "x-office-drawing");
    EXPECT_EQ(path("image-png", "file"), "image-x-generic");
    EXPECT_EQ(path("text-x-c++src|text-x-generic", "file"), "text-x-script");
    EXPECT_EQ(path("text-plain", "file"), "text-x-generic");
    EXPECT_EQ(path("unheard-of|x-office-spreadsheet", "file"), "x-office-spreadsheet");
    EXPECT_EQ(path("application-octet-stream", "file"), "unknown");
    for (const auto* kind : {"folder", "library", "package", "link"})
        EXPECT_EQ(path("unheard-of", kind), kind);
}

TEST(SymbolProviderTest, DrawsSymbolsInTheAskedColourAndSize)
{
    SymbolProvider provider;
    QSize size;
    const auto image = provider.requestPixmap("circle?ff8000", &size, {64, 64}).toImage();
    EXPECT_EQ(size, QSize(64, 64));
    EXPECT_EQ(image.pixelColor(8, 32).rgb(), QColor("#ff8000").rgb()); // on the line
    EXPECT_EQ(image.pixelColor(32, 32).alpha(), 0);
    EXPECT_NE(provider.requestPixmap("circle?000000", &size, {64, 64}).toImage(), image);
    EXPECT_TRUE(provider.requestPixmap("unheard-of?000000", &size, {64, 64}).isNull());
}

} // namespace
} // namespace tessel::qt
