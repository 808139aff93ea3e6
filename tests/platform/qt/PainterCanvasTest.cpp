#include "platform/qt/views/PainterCanvas.h"

#include "platform/qt/views/DrawnItem.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/qt/views/NodeTree.h"
#include "platform/ui/DisplayList.h"
#include "tests/support/InstalledPlatform.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <numbers>
#include <tuple>

namespace tessel::qt {
namespace {

constexpr Color kBelow = {0.2, 0.6, 0.8, 1};
constexpr Color kAbove = {0.9, 0.5, 0.1, 0.5};

QImage drawn(const std::function<void(Canvas&)>& draw, const Color& background = Color::clear())
{
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PainterCanvas canvas(painter, false);
    canvas.setFillColor(background);
    canvas.fillRect({0, 0, 100, 100});
    canvas.setFillColor(Color::black());
    draw(canvas);
    return image;
}

bool isSet(const QImage& image, int x, int y)
{
    return qAlpha(image.pixel(x, y)) > 127;
}

class BlendTest : public testing::TestWithParam<std::tuple<BlendMode, Color>> {};

// The expected colours follow the formulas of Compositing and Blending Level 1, for half of kAbove over kBelow.
TEST_P(BlendTest, FollowsItsFormula)
{
    const auto& [mode, expected] = GetParam();
    const auto image = drawn(
        [mode = mode](Canvas& canvas) {
            canvas.setBlendMode(mode);
            canvas.setFillColor(kAbove);
            canvas.fillRect({0, 0, 50, 100});
        },
        kBelow);
    const auto pixel = image.pixelColor(25, 50);
    EXPECT_NEAR(pixel.redF(), expected.red, 0.02);
    EXPECT_NEAR(pixel.greenF(), expected.green, 0.02);
    EXPECT_NEAR(pixel.blueF(), expected.blue, 0.02);
    EXPECT_NEAR(pixel.alphaF(), expected.alpha, 0.02);
    EXPECT_NEAR(image.pixelColor(75, 50).redF(), kBelow.red, 0.02) << "outside nothing changes";
}

INSTANTIATE_TEST_SUITE_P(Modes, BlendTest,
                         testing::Values(std::tuple{BlendMode::Normal, Color{0.55, 0.55, 0.45, 1}},
                                         std::tuple{BlendMode::Copy, kAbove},
                                         std::tuple{BlendMode::Multiply, Color{0.19, 0.45, 0.44, 1}},
                                         std::tuple{BlendMode::Screen, Color{0.56, 0.7, 0.81, 1}},
                                         std::tuple{BlendMode::Overlay, Color{0.28, 0.6, 0.72, 1}},
                                         std::tuple{BlendMode::Darken, Color{0.2, 0.55, 0.45, 1}},
                                         std::tuple{BlendMode::Lighten, Color{0.55, 0.6, 0.8, 1}},
                                         std::tuple{BlendMode::SourceAtop, Color{0.55, 0.55, 0.45, 1}},
                                         std::tuple{BlendMode::DestinationOut, Color{0.2, 0.6, 0.8, 0.5}}));

TEST(PainterCanvasTest, DrawsOutlinesAsTheyAreMeant)
{
    const auto pie = drawn([](Canvas& canvas) {
        Path path;
        path.moveTo({50, 50});
        path.addArc({50, 50}, 40, -std::numbers::pi / 2, 0.3 * std::numbers::pi); // 40 % from the top on
        path.close();
        canvas.fill(path);
    });
    EXPECT_TRUE(isSet(pie, 60, 20));
    EXPECT_TRUE(isSet(pie, 80, 60));
    EXPECT_FALSE(isSet(pie, 50, 80));
    EXPECT_FALSE(isSet(pie, 20, 50));

    const auto throughZero = drawn([](Canvas& canvas) {
        Path path;
        path.addArc({50, 50}, 40, 1.75 * std::numbers::pi, 0.25 * std::numbers::pi);
        canvas.fill(path);
    });
    EXPECT_TRUE(isSet(throughZero, 85, 50)) << "clockwise through three o'clock";
    EXPECT_FALSE(isSet(throughZero, 15, 50));

    const auto twice = drawn([](Canvas& canvas) {
        Path path;
        path.addArc({50, 50}, 40, 0, 2 * std::numbers::pi);
        path.addArc({50, 50}, 20, 0, 2 * std::numbers::pi);
        canvas.fill(path);
    });
    EXPECT_TRUE(isSet(twice, 50, 50)) << "wound around twice is not outside";
    EXPECT_FALSE(isSet(twice, 5, 5));
}

TEST(PainterCanvasTest, StrokesWithTheWidthOfTheLine)
{
    const auto ring = [](double width) {
        return drawn([width](Canvas& canvas) {
            canvas.setLineWidth(width);
            canvas.strokeOval({20, 20, 60, 60});
            Path line;
            line.moveTo({0, 5});
            line.lineTo({90, 5});
            canvas.stroke(line);
        });
    };
    EXPECT_TRUE(isSet(ring(6), 22, 50));
    EXPECT_TRUE(isSet(ring(6), 18, 50)) << "half of it lies outside";
    EXPECT_FALSE(isSet(ring(6), 50, 50));
    EXPECT_FALSE(isSet(ring(6), 91, 5)) << "ends are butt";
    EXPECT_EQ(ring(0), drawn([](Canvas&) {})) << "no line is no line";
}

TEST(DrawnImageTest, IsShownAsLongAsSomebodyHoldsIt)
{
    auto drawing = std::make_shared<DisplayList>();
    drawing->fillRect({0, 0, 10, 20});
    std::optional<Image> image = Image::drawn(drawing, {20, 20});
    drawing.reset();
    const auto source = imageSource(image, false);
    EXPECT_EQ(imageSource(std::optional(*image), false), source) << "a copy shares the drawing";
    const auto id = source.section('/', 3);

    DrawnImageProvider provider;
    QSize size;
    EXPECT_EQ(provider.requestImage(id, &size, {}).size(), QSize(20, 20));
    const auto doubled = provider.requestImage(id, &size, {40, 40});
    EXPECT_EQ(size, QSize(40, 40));
    EXPECT_EQ(doubled.pixelColor(10, 20), QColor(Qt::black));
    EXPECT_EQ(doubled.pixelColor(30, 20).alpha(), 0);
    const auto dark = provider.requestImage(imageSource(image, true).section('/', 3), &size, {});
    EXPECT_GT(dark.pixelColor(5, 10).lightnessF(), 0.9);
    image.reset();
    EXPECT_TRUE(provider.requestImage(id, &size, {}).isNull());
    EXPECT_TRUE(provider.requestImage("no drawing", &size, {}).isNull());
}

class Square final : public View {
public:
    Square() : View({0, 0, 60, 60}) {}
    [[nodiscard]] bool drawsItself() const override { return true; }
    void draw(Canvas& canvas) const override
    {
        canvas.setFillColor(color);
        canvas.fillRect(bounds());
    }

    Color color = {1, 0, 0, 1};
};

TEST(DrawnItemTest, ShowsWhatTheViewDrawsNow)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const InstalledPlatform platform;
    const auto view = std::make_shared<Square>();
    NodeTree tree(false);
    QQuickWindow window;
    window.resize(100, 100);
    auto* const item = new DrawnItem(window.contentItem());
    item->setSize({60, 60});
    item->setNode(qobject_cast<DrawnNode*>(tree.nodeFor(view)));
    window.show();
    EXPECT_EQ(window.grabWindow().pixelColor(30, 30), QColor(Qt::red));
    EXPECT_EQ(window.grabWindow().pixelColor(80, 30), QColor(Qt::white));

    view->color = {0, 0, 1, 1};
    view->setNeedsDisplay();
    EXPECT_EQ(window.grabWindow().pixelColor(30, 30), QColor(Qt::blue));
    view->setFrame({0, 0, 20, 20});
    item->setSize({20, 20});
    EXPECT_EQ(window.grabWindow().pixelColor(30, 30), QColor(Qt::white));
    item->setNode(nullptr);
    EXPECT_EQ(window.grabWindow().pixelColor(10, 10), QColor(Qt::white));
}

} // namespace
} // namespace tessel::qt
