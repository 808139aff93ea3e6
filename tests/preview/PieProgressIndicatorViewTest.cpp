#include "preview/PieProgressIndicatorView.h"

#include "platform/ui/DisplayList.h"

#include <gmock/gmock.h>

#include <numbers>

namespace tessel {
namespace {

struct Slice {
    float progress;
    double degrees; ///< from twelve o'clock
};

class PieProgressIndicatorViewTest : public testing::TestWithParam<Slice> {};

TEST_P(PieProgressIndicatorViewTest, DrawsAWedgeFromTwelveOClock)
{
    PieProgressIndicatorView pie({7, 7, 40, 33});
    pie.setProgress(GetParam().progress);
    DisplayList drawing;
    pie.draw(drawing);
    Path wedge;
    for (const auto& command : drawing.commands())
        if (const auto* fill = std::get_if<DisplayList::FillPath>(&command))
            wedge = fill->path;
    ASSERT_EQ(wedge.elements().size(), 3U);
    EXPECT_EQ(wedge.elements()[0].point, (Point{20, 16.5}));
    const auto& arc = wedge.elements()[1];
    EXPECT_EQ(arc.radius, 17) << "half the height, rounded up";
    EXPECT_NEAR((arc.endAngle - arc.startAngle) * 180 / std::numbers::pi, GetParam().degrees, 1e-4);
    EXPECT_NEAR(arc.startAngle * 180 / std::numbers::pi, -90, 1e-9);
    EXPECT_THAT(drawing.commands(), testing::Contains(DisplayList::Command(DisplayList::StrokeOval{{0, 0, 40, 33}})));
}

INSTANTIATE_TEST_SUITE_P(Slices, PieProgressIndicatorViewTest,
                         testing::Values(Slice{-1, 1.8}, Slice{0, 1.8}, Slice{0.25F, 90}, Slice{0.9F, 324},
                                         Slice{1, 358.2}, Slice{2, 358.2}));

TEST(PieProgressTest, IsDrawnAnewOnlyForAnotherFraction)
{
    const auto pie = std::make_shared<PieProgressIndicatorView>();
    int drawings = 0;
    pie->changed = [&](ViewChange change) { drawings += change == ViewChange::Drawing ? 1 : 0; };
    for (const auto progress : {0.0F, 0.5F, 0.5F, 0.6F})
        pie->setProgress(progress);
    EXPECT_EQ(drawings, 2);
}

} // namespace
} // namespace tessel
