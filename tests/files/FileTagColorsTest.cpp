#include "files/TesselDriveApp_FileTagColors.h"
#include "platform/ui/CompositingFilter.h"

#include <gmock/gmock.h>

#include <cmath>

namespace tessel {
namespace {

namespace filter = compositingFilter;

constexpr Color kSource = {0.25, 0.75, 1, 0.5};
constexpr Color kBackdrop = {0.5, 0.25, 0.8, 0.8};

void expectNear(const Color& color, const Color& expected)
{
    constexpr double kTolerance = 2e-6;
    EXPECT_NEAR(color.red, expected.red, kTolerance);
    EXPECT_NEAR(color.green, expected.green, kTolerance);
    EXPECT_NEAR(color.blue, expected.blue, kTolerance);
    EXPECT_NEAR(color.alpha, expected.alpha, kTolerance);
}

struct Blending {
    std::optional<std::string_view> filter;
    Color result;
};

class FileTagColorsTest : public testing::TestWithParam<Blending> {};

TEST_P(FileTagColorsTest, BlendsByTheFilter)
{
    expectNear(tsd_colorBlendedWithColor(kBackdrop, kSource, GetParam().filter), GetParam().result);
}

// Worked out by hand; the alpha stays that of the backdrop but for source-over.
INSTANTIATE_TEST_SUITE_P(Filters, FileTagColorsTest,
                         testing::Values(Blending{std::nullopt, {0.325 / 0.9, 0.475 / 0.9, 0.82 / 0.9, 0.9}},
                                         Blending{filter::kNormal, {0.325 / 0.9, 0.475 / 0.9, 0.82 / 0.9, 0.9}},
                                         Blending{filter::kSourceOver, {0.325 / 0.9, 0.475 / 0.9, 0.82 / 0.9, 0.9}},
                                         Blending{filter::kMultiply, {0.3125, 0.21875, 0.8, 0.8}},
                                         Blending{filter::kScreen, {0.5625, 0.53125, 0.9, 0.8}},
                                         Blending{filter::kOverlay, {0.375, 0.3125, 0.9, 0.8}},
                                         Blending{filter::kDarken, {0.375, 0.25, 0.8, 0.8}},
                                         Blending{filter::kLighten, {0.5, 0.5, 0.9, 0.8}},
                                         Blending{filter::kColorDodge, {1.75 / 3, 0.625, 0.9, 0.8}},
                                         Blending{filter::kColorBurn, {-0.5, 0.2 / 3, 0.64, 0.8}},
                                         Blending{filter::kPlusLighter, {0.625, 0.625, 0.9, 0.8}},
                                         Blending{filter::kPlusDarker, {0.15625, 0.15625, 1, 0.8}},
                                         Blending{"none of these", kBackdrop}));

TEST(FileTagColorsEdgesTest, DegenerateColorsStayFinite)
{
    EXPECT_EQ(tsd_colorBlendedWithColor(kBackdrop, std::nullopt), kBackdrop);
    EXPECT_EQ(tsd_colorBlendedWithColor(kBackdrop, Color{0, 0, 0, 1e-7}), kBackdrop);
    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::black()), Color::black());
    EXPECT_DOUBLE_EQ(tsd_colorBlendedWithColor(Color::gray(0, 0.5), Color::gray(1, 0.5)).alpha, 0.75);
    // Both transparent, though neither is exactly: there is nothing to see, in white.
    EXPECT_EQ(tsd_colorBlendedWithColor(Color::gray(0.5, -0.5), Color::gray(0.2, 1.0 / 3)).red, 1);

    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::white(), filter::kMultiply), kBackdrop);
    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::black(), filter::kScreen), kBackdrop);
    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::black(), filter::kColorDodge), kBackdrop);
    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::white(), filter::kColorDodge), {1, 1, 1, 0.8});
    expectNear(tsd_colorBlendedWithColor(kBackdrop, Color::black(), filter::kColorBurn), {0, 0, 0, 0.8});
    expectNear(tsd_colorBlendedWithColor(Color::gray(0.5, 0), kSource, filter::kPlusDarker), Color::clear());
}

} // namespace
} // namespace tessel
