#include "platform/qt/thumbnails/ThumbnailMaker.h"

#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

namespace tessel::qt {
namespace {

using Outcome = MadeThumbnail::Outcome;

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format));
    return bytes;
}

// As a camera does that was held on its side: the picture lies, and a note says how to turn it (Exif, orientation 6).
QByteArray lying(QByteArray jpeg)
{
    return jpeg.insert(2, QByteArray("\xff\xe1\0\x22"
                                     "Exif\0\0"
                                     "MM\0\x2a\0\0\0\x08"
                                     "\0\x01"
                                     "\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"
                                     "\0\0\0\0",
                                     36));
}

// Blue, with a red left half.
QImage halves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width / 2; ++x)
            image.setPixelColor(x, y, Qt::red);
    return image;
}

QByteArray pdf(const QByteArray& trailer = {})
{
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 600]/Contents 4 0 R>>endobj\n"
           "4 0 obj<</Length 30>>stream\n1 0 0 rg 0 300 300 300 re f   \nendstream endobj\ntrailer<</Root 1 0 R" +
           trailer + ">>\n";
}

QByteArray svg(const QByteArray& content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='200' "
           "height='100'>" +
           content + "</svg>";
}

bool isRed(const QImage& image, double x, double y)
{
    const auto color = image.pixelColor(int(image.width() * x), int(image.height() * y));
    return color.alpha() > 200 && color.red() > 200 && color.green() < 60 && color.blue() < 60;
}

class ThumbnailMakerTest : public ::testing::Test {
protected:
    MadeThumbnail made(const QByteArray& document, const char* name)
    {
        const auto url = platform.drive.file(name, document.toStdString());
        return makeThumbnail(ThumbnailOriginal::at(QByteArray::fromStdString(url.path())).value(),
                             ThumbnailSize::Normal, {});
    }

    InstalledPlatform platform;
};

TEST_F(ThumbnailMakerTest, ShowsImagesDrawingsAndPages)
{
    const auto image = made(encoded(halves(400, 200), "png"), "any name");
    EXPECT_EQ(image.image.size(), QSize(128, 64));
    EXPECT_TRUE(isRed(image.image, 0.25, 0.5) && !isRed(image.image, 0.75, 0.5));

    const auto drawing = made(svg("<rect width='100' height='100' fill='#ff0000'/>"), "drawing.svg");
    EXPECT_EQ(drawing.image.size(), QSize(128, 64));
    EXPECT_TRUE(isRed(drawing.image, 0.25, 0.5));
    EXPECT_EQ(drawing.image.pixelColor(100, 32).alpha(), 0);

    const auto page = made(pdf(), "page.pdf");
    EXPECT_EQ(page.image.size(), QSize(64, 128));
    EXPECT_TRUE(isRed(page.image, 0.5, 0.25));
    EXPECT_EQ(page.image.pixelColor(32, 96), QColor(Qt::white));
}

TEST_F(ThumbnailMakerTest, TurnsPhotosUprightAndKeepsSmallImagesSmall)
{
    const auto photo = made(lying(encoded(halves(400, 200), "jpeg")), "photo.jpg");
    EXPECT_EQ(photo.image.size(), QSize(64, 128));
    EXPECT_TRUE(isRed(photo.image, 0.5, 0.2) && !isRed(photo.image, 0.5, 0.8));
    EXPECT_EQ(made(encoded(halves(20, 10), "png"), "small.png").image.size(), QSize(20, 10));
    EXPECT_EQ(made(encoded(halves(4000, 2), "png"), "line.png").image.size(), QSize(128, 1));
}

TEST_F(ThumbnailMakerTest, KnowsImagesByTheirContentWhateverTheirName)
{
    EXPECT_EQ(made(encoded(halves(40, 40), "jpeg"), "photo.png").outcome, Outcome::Made);
}

TEST_F(ThumbnailMakerTest, FailsForWhatIsDamagedOrEncrypted)
{
    const auto png = encoded(halves(400, 200), "png");
    EXPECT_EQ(made(png.left(png.size() / 2), "cut.png").outcome, Outcome::Failed);
    EXPECT_EQ(made(pdf().left(120), "cut.pdf").outcome, Outcome::Failed);
    const QByteArray key(32, 'k');
    EXPECT_EQ(
        made(pdf("/ID[<00><00>]/Encrypt<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" + key + ")>>"), "locked.pdf")
            .outcome,
        Outcome::Failed);
    EXPECT_EQ(made(svg("<rect"), "cut.svg").outcome, Outcome::Failed);
    EXPECT_EQ(made(QByteArray("text\0zero", 9), "binary.txt").outcome, Outcome::NotMade);
    EXPECT_EQ(made("\x7f"
                   "ELF\1\1\1",
                   "program")
                  .outcome,
              Outcome::NotMade);
}

// The decoder itself would answer a grey picture of this small file that claims to be a large one.
TEST_F(ThumbnailMakerTest, RefusesImagesOfTooManyPixels)
{
    auto jpeg = encoded(halves(16, 16), "jpeg");
    const auto frame = jpeg.indexOf("\xff\xc0");
    ASSERT_GT(frame, 0);
    jpeg.replace(frame + 5, 4, QByteArray::fromHex("27102ee1")); // 10,000 rows of 12,001 pixels
    EXPECT_EQ(made(jpeg, "huge.jpg").outcome, Outcome::Failed);
    jpeg.replace(frame + 5, 4, QByteArray::fromHex("27102ee0"));
    EXPECT_EQ(made(jpeg, "large.jpg").outcome, Outcome::Made);
}

TEST_F(ThumbnailMakerTest, DrawsNothingFromOtherFilesIntoADrawing)
{
    const auto image = encoded(halves(2, 2), "png");
    const auto path = QByteArray::fromStdString(platform.drive.file("red.png", image.toStdString()).path());
    const auto inner = svg("<image width='200' height='100' xlink:href='" + path + "'/>").toBase64();
    const auto shown = [this](const QByteArray& reference) {
        const auto drawing = made(svg("<image width='200' height='100' xlink:href='" + reference + "'/>"), "a.svg");
        EXPECT_EQ(drawing.outcome, Outcome::Made);
        return isRed(drawing.image, 0.1, 0.5);
    };
    EXPECT_TRUE(shown("data:image/png;base64," + encoded(halves(200, 100), "png").toBase64()));
    EXPECT_FALSE(shown(path));
    EXPECT_FALSE(shown("file://" + path));
    EXPECT_FALSE(shown("data:image/svg+xml;base64," + inner));
    EXPECT_FALSE(shown("data:image/png;base64," + inner));
}

// Each part draws the one before it eighty times: 80^4 rectangles, were they drawn. What is left is the first part.
TEST_F(ThumbnailMakerTest, EndsSoonWithADrawingThatMultiplies)
{
    QByteArray parts = "<g id='p0'><rect width='200' height='100' fill='#ff0000'/></g>";
    for (int part = 1; part <= 4; ++part)
        parts += "<g id='p" + QByteArray::number(part) + "'>" +
                 ("<use xlink:href='#p" + QByteArray::number(part - 1) + "'/>").repeated(80) + "</g>";
    const auto drawing = made(svg(parts + "<use xlink:href='#p4'/><use xlink:href='#p0'/>"), "a.svg");
    EXPECT_TRUE(isRed(drawing.image, 0.5, 0.5));
    EXPECT_EQ(made(svg(QByteArray("<g/>").repeated(30'000)), "many.svg").outcome, Outcome::Failed);
}

TEST_F(ThumbnailMakerTest, ReadsTextsInTheirEncoding)
{
    const auto utf8 = made("Bär\tund Igel\n", "a.txt").image;
    ASSERT_EQ(utf8.size(), QSize(96, 128));
    EXPECT_NE(utf8, made("B\tund Igel\n", "a.txt").image);
    EXPECT_EQ(utf8, made("B\xe4r\tund Igel\n", "a.txt").image);
    EXPECT_EQ(utf8, made(QByteArray("\xff\xfe"
                                    "B\0\xe4\0r\0\t\0u\0n\0d\0 \0I\0g\0e\0l\0\n\0",
                                    28),
                         "a.txt")
                        .image);
    EXPECT_EQ(made("x" + QByteArray("\xc3\xa4").repeated(8000), "a.txt").image,
              made("x" + QByteArray("\xc3\xa4").repeated(4000), "a.txt").image); // cut within a character
}

} // namespace
} // namespace tessel::qt
