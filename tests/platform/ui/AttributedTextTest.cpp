#include "platform/ui/AttributedText.h"
#include "platform/ui/Label.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

constexpr Font kFont = {10, false}; // 5 points a character; 9.5 up and 2.5 down

AttributedText tagged(const std::vector<std::string>& names)
{
    AttributedText text;
    for (const auto& name : names) {
        text.append(Image::drawn(std::make_shared<DisplayList>(), {9, 12}));
        text.append(name, {2.5});
    }
    return text;
}

struct Measuring {
    std::vector<std::string> names;
    double width;
    std::size_t lines;
    Size size;
};

class AttributedTextTest : public testing::TestWithParam<Measuring> {};

TEST_P(AttributedTextTest, TakesTheRoomOfItsWordsAndImages)
{
    const auto& [names, width, lines, size] = GetParam();
    EXPECT_EQ(tagged(names).measured(FixedTextMeasurer(), kFont, width, lines), size);
}

INSTANTIATE_TEST_SUITE_P(Texts, AttributedTextTest,
                         testing::Values(Measuring{{}, 100, 0, {}}, Measuring{{"Work"}, kUnlimitedWidth, 1, {29, 12}},
                                         Measuring{{"Work ", "Home"}, kUnlimitedWidth, 1, {63, 12}},
                                         Measuring{{"Work ", "Home"}, 63, 0, {63, 12}},
                                         // An image stays with its name; blanks at a line's end take no room.
                                         Measuring{{"Work ", "Home"}, 62, 0, {29, 24}},
                                         Measuring{{"Work ", "Home"}, 62, 1, {29, 12}},
                                         Measuring{{"At  Home ", "X"}, 40, 0, {39, 24}},
                                         Measuring{{"Work  ", "X"}, 100, 0, {53, 12}},
                                         Measuring{{"Longest"}, 30, 0, {30, 12}}));

TEST(AttributedLabelTest, IsMeasuredAndReadLikeAnyText)
{
    const InstalledPlatform platform;
    const auto label = std::make_shared<Label>("before");
    int changes = 0;
    label->changed = [&](ViewChange) { changes++; };
    label->setFont(kFont);
    label->setAttributedText(tagged({"Work ", "Home"}));
    EXPECT_EQ(label->intrinsicContentSize(), (Size{63, 12}));
    EXPECT_EQ(label->accessibilityLabel(), "Work Home");
    label->setAttributedText(tagged({"Work ", "Home"}));
    EXPECT_EQ(changes, 2 + 1) << "drawings are compared as objects";
    label->setText("Work Home");
    EXPECT_FALSE(label->attributedText());
    EXPECT_EQ(label->intrinsicContentSize(), (Size{45, 12}));
    EXPECT_EQ(changes, 4);
}

} // namespace
} // namespace tessel
