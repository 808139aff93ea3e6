#include "platform/qt/views/QtTextMeasurer.h"

#include "platform/qt/views/Fonts.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace tessel::qt {
namespace {

/// Text, whether it is bold, width and lines.
class QtTextMeasurerTest : public testing::TestWithParam<std::tuple<const char*, bool, double, std::size_t>> {};

// A label that is given less room than QML's Text takes is cut or elided on screen.
TEST_P(QtTextMeasurerTest, MeasuresWhatQMLShows)
{
    const auto& [text, bold, width, lines] = GetParam();
    const Font font{17, bold};
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(
        "import QtQuick\nText { textFormat: Text.PlainText; wrapMode: Text.Wrap; elide: Text.ElideRight }", {});
    const std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem*>(component.create()));
    ASSERT_TRUE(item) << component.errorString().toStdString();
    item->setProperty("font", systemFont(font));
    if (lines > 0)
        item->setProperty("maximumLineCount", static_cast<int>(lines));
    item->setProperty("text", QString::fromUtf8(text));
    item->setWidth(width);

    const QtTextMeasurer measurer;
    const auto size = measurer.measure(text, font, width, lines);
    const auto shownHeight = item->property("contentHeight").toDouble();
    EXPECT_GE(size.height, shownHeight);
    EXPECT_LT(size.height,
              std::max(shownHeight + 1, measurer.metrics(font).lineHeight * item->property("lineCount").toInt() + 1))
        << "no more than its lines";
    EXPECT_GE(size.width, std::floor(item->property("contentWidth").toDouble()));
    EXPECT_LE(size.width, width);

    item->setWidth(size.width);
    EXPECT_EQ(item->property("contentHeight").toDouble(), shownHeight) << "in the room that was asked for";
    EXPECT_FALSE(lines == 0 && item->property("truncated").toBool());
    EXPECT_EQ(measurer.measure(text, font, width, lines), size) << "and again";
}

INSTANTIATE_TEST_SUITE_P(
    Texts, QtTextMeasurerTest,
    testing::Combine(testing::Values("Plan.txt", "The quick brown fox jumps over the lazy dog, twice.\nThen it sleeps.",
                                     "Donaudampfschifffahrtsgesellschaftskapitän", "ملخص المشروع النهائي للعام القادم",
                                     "计划与预算的最终版本供大家审阅", "😀 👩‍👩‍👧 e\xcc\x81"),
                     testing::Bool(), testing::Values(90.0, 1000.0), testing::Values(0, 1, 2)));

TEST(QtTextMeasurerMetricsTest, AreThoseOfTheSystemsFont)
{
    const QtTextMeasurer measurer;
    const auto small = measurer.metrics({12, false});
    const auto large = measurer.metrics({24, false});
    EXPECT_GT(small.ascender, small.capHeight);
    EXPECT_GT(small.capHeight, 0);
    EXPECT_GT(small.descender, 0);
    EXPECT_NEAR(small.lineHeight, small.ascender + small.descender, 1);
    EXPECT_EQ(measurer.measure("one line", {12, false}, kUnlimitedWidth, 1).height, small.lineHeight);
    EXPECT_NEAR(large.capHeight, 2 * small.capHeight, 1);
    EXPECT_EQ(measurer.measure("", {12, false}, 100, 0), Size());
    EXPECT_GT(measurer.measure("wider", {12, true}, 1000, 1).width,
              measurer.measure("wider", {12, false}, 1000, 1).width);
}

} // namespace
} // namespace tessel::qt
