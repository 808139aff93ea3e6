#include "platform/run/MainQueue.h"
#include "platform/ui/BarButtonItem.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/Label.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "platform/ui/TextField.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Of a size of its own, or none where a component is below 0.
class Box : public View {
public:
    explicit Box(const Size& size) : size_(size) {}
    [[nodiscard]] Size intrinsicContentSize() const override { return size_; }

private:
    Size size_;
};

/// Gives its one subview its own size, as containers do.
class Container : public View {
public:
    int layouts = 0;

protected:
    void layoutSubviews() override
    {
        ++layouts;
        for (const auto& subview : subviews())
            subview->setFrame(bounds());
    }
};

class ViewTest : public testing::Test {
protected:
    ViewTest()
    {
        platform.services().device.screenChanged = [this] { ++asked; };
    }
    ~ViewTest() override { platform.services().device.screenChanged = nullptr; }

    InstalledPlatform platform;
    int asked = 0; ///< how often the shell was asked to look again
};

TEST_F(ViewTest, MovesBetweenItsSuperviewsAndOutlivesThem)
{
    const auto child = std::make_shared<View>();
    auto first = std::make_shared<StackView>();
    const auto second = std::make_shared<View>();
    std::vector<ViewChange> changes;
    first->changed = [&](ViewChange change) { changes.push_back(change); };
    first->addArrangedSubview(child);
    second->addSubview(child);
    EXPECT_THAT(first->subviews(), IsEmpty());
    EXPECT_THAT(first->arrangedSubviews(), IsEmpty());
    EXPECT_THAT(changes, ElementsAre(ViewChange::Subviews, ViewChange::Subviews));
    EXPECT_EQ(child->superview(), second);

    first->addArrangedSubview(child);
    first->addArrangedSubview(child);
    EXPECT_EQ(first->arrangedSubviews().size(), 1U);
    first->removeArrangedSubview(child);
    EXPECT_EQ(child->superview(), first);
    first.reset();
    EXPECT_EQ(child->superview(), nullptr);
    child->removeFromSuperview();
}

TEST_F(ViewTest, AsksForALayoutOnceAndNotForWhatALayoutItselfPlaces)
{
    const auto root = std::make_shared<Container>();
    const auto middle = std::make_shared<Container>();
    const auto label = std::make_shared<Label>("a");
    root->addSubview(middle);
    middle->addSubview(label);
    root->setFrame({0, 0, 100, 50});
    root->layoutIfNeeded();
    EXPECT_EQ(label->frame(), (Rect{0, 0, 100, 50}));
    EXPECT_EQ(asked, 0) << "whoever shows the root the first time lays it out";

    label->setText("b");
    label->setText("bb");
    EXPECT_EQ(asked, 1);
    root->layoutIfNeeded();
    EXPECT_EQ(middle->layouts, 2);

    root->setFrame({0, 0, 200, 50});
    root->setFrame({10, 0, 200, 50});
    root->layoutIfNeeded();
    root->layoutIfNeeded();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(root->layouts, 3);
}

struct StackCase {
    const char* name;
    StackView::Axis axis;
    StackView::Alignment alignment;
    std::vector<Size> contents;
    std::vector<Rect> frames; ///< in a stack of 100 by 60 with a spacing of 10
};

class StackViewTest : public ViewTest, public testing::WithParamInterface<StackCase> {};

TEST_P(StackViewTest, SharesTheRoom)
{
    const auto stack = std::make_shared<StackView>();
    stack->setAxis(GetParam().axis);
    stack->setAlignment(GetParam().alignment);
    stack->setSpacing(10);
    for (const auto& size : GetParam().contents)
        stack->addArrangedSubview(std::make_shared<Box>(size));
    const auto hidden = std::make_shared<Box>(Size{50, 50});
    stack->addArrangedSubview(hidden);
    hidden->setHidden(true);
    stack->setFrame({0, 0, 100, 60});
    stack->layoutIfNeeded();
    std::vector<Rect> frames;
    for (const auto& view : stack->subviews())
        if (!view->hidden())
            frames.push_back(view->frame());
    EXPECT_EQ(frames, GetParam().frames);
}

constexpr auto kRow = StackView::Axis::Horizontal;
constexpr auto kColumn = StackView::Axis::Vertical;

INSTANTIATE_TEST_SUITE_P(Rooms, StackViewTest,
                         testing::Values(StackCase{"surplusToTheLast",
                                                   kRow,
                                                   StackView::Alignment::Fill,
                                                   {{20, 5}, {30, 5}},
                                                   {{0, 0, 20, 60}, {30, 0, 70, 60}}},
                                         StackCase{"surplusToThoseWithoutASize",
                                                   kRow,
                                                   StackView::Alignment::Leading,
                                                   {{-1, 10}, {30, 90}, {-1, -1}},
                                                   {{0, 0, 25, 10}, {35, 0, 30, 60}, {75, 0, 25, 60}}},
                                         StackCase{"shortageFromTheEnd",
                                                   kRow,
                                                   StackView::Alignment::Center,
                                                   {{70, 20}, {-1, 5}, {40, 20}},
                                                   {{0, 20, 70, 20}, {80, 28, 0, 5}, {90, 20, 10, 20}}},
                                         StackCase{"shortageOfMoreThanTheLast",
                                                   kColumn,
                                                   StackView::Alignment::Trailing,
                                                   {{40, 70}, {20, 5}},
                                                   {{60, 0, 40, 50}, {80, 60, 20, 0}}}),
                         [](const auto& info) { return info.param.name; });

TEST_F(ViewTest, StacksGrowWithTheLinesOfTheirTexts)
{
    const auto text = std::make_shared<Label>("eins zwei drei");
    text->setFont({10, false}); // 5 points a character, 12 a line
    text->setNumberOfLines(0);
    const auto row = std::make_shared<StackView>();
    row->addArrangedSubview(std::make_shared<Box>(Size{30, 20}));
    const auto column = std::make_shared<StackView>();
    column->setAxis(kColumn);
    column->addArrangedSubview(text);
    column->addArrangedSubview(row);
    EXPECT_EQ(column->sizeThatFits({0, 0}), (Size{70, 32}));
    EXPECT_EQ(column->sizeThatFits({50, 0}), (Size{50, 44}));
    column->setFrame({0, 0, 50, 100});
    column->layoutIfNeeded();
    EXPECT_EQ(text->frame(), (Rect{0, 0, 50, 24}));
    EXPECT_EQ(row->frame(), (Rect{0, 24, 50, 76}));
    text->setText("eins");
    column->layoutIfNeeded();
    EXPECT_EQ(row->frame(), (Rect{0, 12, 50, 88}));
}

TEST_F(ViewTest, FixedAdvancesBreakTextIntoWholeLines)
{
    const FixedTextMeasurer measurer;
    const Font font{10, false};
    EXPECT_EQ(measurer.measure("", font, 50, 0), (Size{}));
    EXPECT_EQ(measurer.measure("Bücher 日本", font, kUnlimitedWidth, 1), (Size{45, 12}));
    EXPECT_EQ(measurer.measure("one two three", font, 40, 0), (Size{35, 24}));
    EXPECT_EQ(measurer.measure("a\n\nb\n", font, kUnlimitedWidth, 0), (Size{5, 48}));
    EXPECT_EQ(measurer.measure("abcdefghijkl", font, 25, 0), (Size{25, 36})) << "a word longer than a line is cut";
    EXPECT_EQ(measurer.measure("one two three", font, 25, 2), (Size{15, 24}));
    EXPECT_EQ(measurer.measure("ab", font, 1, 0), (Size{5, 24})) << "a character a line at least";
}

TEST_F(ViewTest, ButtonsMayGoAwayWhileTheyArePressed)
{
    auto button = std::make_shared<Button>("Delete");
    int pressed = 0;
    button->pressed = [&, held = std::make_shared<int>(7)] {
        button->pressed = nullptr;
        button.reset();
        pressed += *held;
    };
    button->setEnabled(false);
    EXPECT_FALSE(button->press());
    button->setEnabled(true);
    auto item = BarButtonItem::custom(button);
    EXPECT_TRUE(item->press());
    EXPECT_EQ(pressed, 7);
    std::shared_ptr<BarButtonItem> plain = BarButtonItem::titled("Done", [&] {
        plain.reset();
        ++pressed;
    });
    EXPECT_TRUE(plain->press());
    EXPECT_EQ(pressed, 8);
}

TEST_F(ViewTest, ATapIsTakenByTheClosestViewThatTakesTaps)
{
    const auto outer = std::make_shared<View>();
    auto inner = std::make_shared<View>();
    const auto leaf = std::make_shared<View>();
    outer->addSubview(inner);
    inner->addSubview(leaf);
    std::string taps;
    leaf->tap();
    outer->tapped = [&] { taps += "outer "; };
    leaf->tap();
    inner->tapped = [&] {
        inner->removeFromSuperview();
        inner.reset();
        taps += "inner";
    };
    leaf->tap();
    EXPECT_EQ(taps, "outer inner");
}

TEST_F(ViewTest, AScrollViewStaysWithItsContentAndShowsAPartOfIt)
{
    const auto scroll = std::make_shared<ScrollView>();
    const auto group = std::make_shared<View>(Rect{0, 300, 100, 200});
    const auto field = std::make_shared<TextField>();
    scroll->setFrame({0, 0, 100, 200});
    scroll->setContentSize({100, 500});
    scroll->addSubview(group);
    group->addSubview(field);
    field->setFrame({10, 20, 50, 30});
    EXPECT_EQ(field->frameIn(*scroll), (Rect{10, 320, 50, 30}));
    scroll->setContentInset({.top = 10, .bottom = 80});

    ASSERT_TRUE(field->becomeFirstResponder());
    EXPECT_EQ(scroll->contentOffset(), (Point{0, 230})) << "its end is above the inset: 350 - 200 + 80";
    scroll->scrollRectToVisible({0, 50, 100, 30});
    EXPECT_EQ(scroll->contentOffset(), (Point{0, 40}));
    scroll->scrollRectToVisible({0, 60, 100, 30});
    EXPECT_EQ(scroll->contentOffset(), (Point{0, 40})) << "it is in sight";
    scroll->scrollRectToVisible({0, 490, 100, 10});
    EXPECT_EQ(scroll->contentOffset(), (Point{0, 380})) << "the end of the content above the inset";
    scroll->setContentInset({.top = 10});
    EXPECT_EQ(scroll->contentOffset(), (Point{0, 300}));
}

TEST_F(ViewTest, ABarItemOfAButtonIsWhatTheButtonIs)
{
    const auto button = std::make_shared<Button>("Move");
    const auto item = BarButtonItem::custom(button);
    int told = 0;
    item->changed = [&] { ++told; };
    item->setEnabled(false);
    item->setEnabled(false);
    EXPECT_FALSE(button->enabled());
    EXPECT_FALSE(item->press());
    EXPECT_EQ(told, 1);
    EXPECT_EQ(asked, 1);
    button->setEnabled(true);
    EXPECT_TRUE(item->enabled());
    EXPECT_EQ(item->title(), "Move");
    EXPECT_FALSE(BarButtonItem::flexibleSpace()->press());
}

} // namespace
} // namespace tessel
