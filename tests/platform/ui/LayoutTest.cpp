#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/Label.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "platform/ui/layout/LayoutConstraint.h"
#include "platform/ui/layout/VisualFormat.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {

static void PrintTo(const Rect& rect, std::ostream* stream)
{
    *stream << "{" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << "}";
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using View_ = std::shared_ptr<View>;

class Box : public View {
public:
    explicit Box(const Size& size) : size_(size) {}
    [[nodiscard]] Size intrinsicContentSize() const override { return size_; }
    void setSize(const Size& size)
    {
        size_ = size;
        invalidateIntrinsicContentSize();
    }

private:
    Size size_;
};

class LayoutTest : public testing::Test {
protected:
    template <typename Made = View, typename... Arguments>
    std::shared_ptr<Made> add(const std::string& name, const Arguments&... arguments)
    {
        auto made = std::make_shared<Made>(arguments...);
        made->setLaidOutByConstraints(true);
        made->layoutIdentifier = name;
        views[name] = made.get();
        root->addSubview(made);
        return made;
    }

    void activate(std::string_view format)
    {
        const auto constraints = constraintsWithVisualFormat(format, views);
        ASSERT_TRUE(constraints) << constraints.error().description;
        LayoutConstraint::activate(constraints.value());
    }

    Rect frame(const View_& view)
    {
        root->layoutIfNeeded();
        return view->frame();
    }

    std::vector<std::string> contradictions() const
    {
        auto lines = platform.log->lines();
        std::erase_if(lines, [](const auto& line) { return !line.starts_with("A constraint contradicts"); });
        return lines;
    }

    LayoutTest() { root->layoutIdentifier = "root"; }

    InstalledPlatform platform;
    Device& device = platform.services().device;
    std::shared_ptr<View> root = std::make_shared<View>(Rect{0, 0, 300, 200});
    NamedViews views{{"root", root.get()}};
};

struct FormatCase {
    const char* name;
    std::vector<const char*> formats;
    Rect a; ///< of content 40 by 20
    Rect b; ///< of content 100 by 30
};

class FormatTest : public LayoutTest, public testing::WithParamInterface<FormatCase> {};

TEST_P(FormatTest, GivesTheFrames)
{
    const auto a = add<Box>("a", Size{40, 20});
    const auto b = add<Box>("b", Size{100, 30});
    for (const auto* const format : GetParam().formats)
        activate(format);
    EXPECT_EQ(frame(a), GetParam().a);
    EXPECT_EQ(frame(b), GetParam().b);
    EXPECT_THAT(contradictions(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Formats, FormatTest,
    testing::Values(
        FormatCase{"surplusToTheLast", {"H:|[a]-10-[b]|", "V:|[a]", "V:|[b]|"}, {0, 0, 40, 20}, {50, 0, 250, 200}},
        FormatCase{"aPriority",
                   {"|-5-[a(60@700,>=20)][b(240@999)]-8-|", "V:[a]|", "V:[b]|"},
                   {5, 180, 47, 20},
                   {52, 170, 240, 30}},
        FormatCase{"sideOfAnother", {"[a(==b)]", "[b(150)]", "V:|[a(<=10)]-30-[b]"}, {0, 0, 150, 10}, {0, 40, 150, 30}},
        FormatCase{"shortage", {"|-20-[a]-150-[b]-20-|"}, {20, 0, 40, 20}, {210, 0, 70, 30}},
        FormatCase{
            "weakEdge", {"|[a]-(>=0)-[b]-(5@100)-|", "V:|-(10)-[a]-(1)-[b]"}, {0, 10, 40, 20}, {195, 31, 100, 30}}),
    [](const auto& info) { return info.param.name; });

TEST_F(LayoutTest, TellsWhatIsWrongWithAFormat)
{
    add("a");
    const std::pair<const char*, const char*> kFaults[] = {{"", "at character 1: \"[\" is missing"},
                                                           {"H:|[b]|", "at character 5: no view is called \"b\""},
                                                           {"[a", "at character 3: \"]\" is missing"},
                                                           {"[a]-[a]", "at character 5: a number is missing"},
                                                           {"[a]-8[a]", "at character 6: \"-\" is missing"},
                                                           {"[a(==)]", "at character 6: a name of a view is missing"},
                                                           {"[a(12@)]", "at character 7: a number is missing"},
                                                           {"|[a]|[a]", "at character 6: nothing may follow"},
                                                           {"[a]-(a)-[a]", "a gap is a number"},
                                                           {"|[root]", "the view has no superview"},
                                                           {"[root]|", "the view has no superview"}};
    for (const auto& [format, fault] : kFaults) {
        const auto made = constraintsWithVisualFormat(format, views);
        ASSERT_FALSE(made) << format;
        EXPECT_THAT(made.error().description, HasSubstr(fault)) << format;
    }
}

TEST_F(LayoutTest, FollowsEveryChange)
{
    const auto icon = add<Box>("icon", Size{20, 20});
    const auto name = add<Label>("name", std::string("four"));
    name->setFont({10, false});
    const auto inset = icon->leadingAnchor().equalTo(root->leadingAnchor(), 10);
    const auto middle = name->centerXAnchor().equalTo(root->centerXAnchor());
    LayoutConstraint::activate({inset, icon->firstBaselineAnchor().equalTo(name->firstBaselineAnchor()),
                                name->topAnchor().equalTo(root->topAnchor(), 30),
                                name->leadingAnchor().atLeast(icon->trailingAnchor(), 5)});
    EXPECT_EQ(frame(icon), (Rect{10, 19.5 + 0.5, 20, 20})) << "30 + 9.5 - 20, on a whole pixel";
    EXPECT_EQ(frame(name).y, 30);

    middle->setActive(true);
    EXPECT_EQ(frame(name), (Rect{140, 30, 20, 12}));
    name->setText("twelve chars");
    EXPECT_EQ(frame(name), (Rect{120, 30, 60, 12}));
    icon->setCompressionResistance(LayoutAxis::Horizontal, 751);
    inset->setConstant(105);
    EXPECT_EQ(frame(name), (Rect{130, 30, 40, 12})) << "pressed from both sides, to stay in the middle";
    root->setFrame({0, 0, 400, 200});
    EXPECT_EQ(frame(name), (Rect{170, 30, 60, 12}));
    icon->setSize({20, 8});
    EXPECT_EQ(frame(icon), (Rect{105, 32, 20, 8})) << "30 + 9.5 - 8";
    name->setFont({20, false});
    EXPECT_EQ(frame(icon), (Rect{105, 41, 20, 8}));
    middle->setActive(false);
    EXPECT_FALSE(middle->isActive());
    icon->removeFromSuperview();
    EXPECT_FALSE(inset->isActive()) << "it left the view that held it";
    EXPECT_EQ(frame(name).y, 30);
    EXPECT_THAT(contradictions(), IsEmpty());
}

TEST_F(LayoutTest, MirrorsWhatDependsOnTheWriting)
{
    const auto a = add<Box>("a", Size{40, 20});
    const auto b = add<Box>("b", Size{30, 20});
    LayoutConstraint::activate(
        {a->leadingAnchor().equalTo(root->leadingAnchor(), 10), a->topAnchor().equalTo(root->topAnchor()),
         b->leftAnchor().equalTo(root->leftAnchor(), 10), b->topAnchor().equalTo(a->bottomAnchor())});
    const auto gap = add<Box>("gap", Size{-1, 5});
    LayoutConstraint::activate(
        {gap->leftAnchor().equalTo(root->leftAnchor(), 60), gap->rightAnchor().equalTo(root->rightAnchor(), -15)});
    EXPECT_EQ(frame(a), (Rect{10, 0, 40, 20}));
    EXPECT_EQ(frame(b), (Rect{10, 20, 30, 20}));
    EXPECT_EQ(frame(gap), (Rect{60, 0, 225, 5}));
    device.layoutDirection = LayoutDirection::RightToLeft;
    EXPECT_EQ(frame(a), (Rect{10, 0, 40, 20})) << "from the leading edge in either direction";
    EXPECT_EQ(frame(b), (Rect{260, 20, 30, 20}));
    EXPECT_EQ(frame(gap), (Rect{15, 0, 225, 5}));
    device.layoutDirection = LayoutDirection::LeftToRight;
}

TEST_F(LayoutTest, LeavesOutWhatContradictsUntilItFits)
{
    const auto a = add("a");
    const auto first = a->widthAnchor().equalTo(100);
    const auto last = a->widthAnchor().equalTo(root->widthAnchor(), -250, 1);
    LayoutConstraint::activate({first, last, a->heightAnchor().equalTo(10)});
    EXPECT_EQ(frame(a), (Rect{0, 0, 100, 10}));
    root->setFrame({0, 0, 320, 200});
    EXPECT_EQ(frame(a).width, 100);
    EXPECT_THAT(contradictions(), ElementsAre(HasSubstr("is left out: a.width = root.width - 250")));
    first->setActive(false);
    EXPECT_EQ(frame(a).width, 70) << "nothing is in its way any more";
    first->setActive(true);
    EXPECT_EQ(frame(a).width, 70) << "now this one is the last";
    last->setConstant(-220);
    EXPECT_EQ(frame(a).width, 100) << "they agree";
    last->setConstant(-300);
    EXPECT_THAT(frame(a).width, testing::AnyOf(100, 20));
    EXPECT_EQ(contradictions().size(), 2U) << "each is told of once";

    const auto stranger = std::make_shared<View>();
    const auto apart = a->widthAnchor().equalTo(stranger->widthAnchor());
    apart->setActive(true);
    EXPECT_FALSE(apart->isActive());
    EXPECT_THAT(platform.log->lines().back(), HasSubstr("No view holds both"));
}

// Views that the program places stand fast, also when they move: what lies in them follows.
TEST_F(LayoutTest, TakesFramesOfTheProgramAsTheyAre)
{
    const auto scroll = std::make_shared<ScrollView>();
    const auto content = std::make_shared<View>(Rect{5, 7, 100, 50});
    const auto inner = std::make_shared<Box>(Size{500, 500});
    inner->setLaidOutByConstraints(true);
    root->addSubview(scroll);
    scroll->setFrame({10, 10, 200, 100});
    scroll->addSubview(content);
    content->addSubview(inner);
    for (const auto& pair : {std::pair{inner->leadingAnchor(), content->leadingAnchor()},
                             std::pair{inner->trailingAnchor(), content->trailingAnchor()}})
        pair.first.equalTo(pair.second)->setActive(true);
    inner->bottomAnchor().equalTo(root->bottomAnchor(), -20)->setActive(true);
    EXPECT_EQ(frame(inner), (Rect{0, 180 - 500 - 17, 100, 500}));
    content->setFrame({5, 27, 120, 50});
    EXPECT_EQ(frame(inner), (Rect{0, 180 - 500 - 37, 120, 500}));
    EXPECT_EQ(content->frame(), (Rect{5, 27, 120, 50}));
    inner->trailingAnchor().equalTo(content->leadingAnchor(), -30)->setActive(true);
    EXPECT_GE(frame(inner).width, 0) << "no side is below zero, whatever is asked for";
}

class Watcher : public StackView {
public:
    std::vector<std::string> told;
    std::function<void()> atLayout;

protected:
    void updateConstraints() override
    {
        StackView::updateConstraints();
        told.emplace_back("constraints");
    }
    void layoutSubviews() override
    {
        told.emplace_back("layout");
        if (atLayout)
            atLayout();
    }
};

TEST_F(LayoutTest, SettlesWithWhatALayoutChangesAndNeverGoesOnForEver)
{
    const auto stack = add<Watcher>("stack");
    const auto label = std::make_shared<Label>("a long text");
    label->setFont({10, false});
    const auto below = std::make_shared<Box>(Size{10, 10});
    stack->setAxis(StackView::Axis::Vertical);
    stack->setAlignment(StackView::Alignment::Leading);
    stack->addArrangedSubview(label);
    stack->addArrangedSubview(below);
    activate("|[stack]");
    activate("V:|[stack]");
    stack->atLayout = [&] { label->setText(label->frame().width > 50 ? "short" : label->text()); };
    EXPECT_EQ(frame(stack), (Rect{0, 0, 25, 22}));
    EXPECT_EQ(label->frame(), (Rect{0, 0, 25, 12}));
    EXPECT_EQ(stack->told.front(), "constraints");

    stack->told.clear();
    double height = 1;
    stack->atLayout = [&] { below->setSize({10, ++height}); };
    below->setHidden(true);
    below->setHidden(false);
    EXPECT_GE(frame(stack).height, 14);
    EXPECT_LE(stack->told.size(), 8U);
}

struct StackAlignmentCase {
    StackView::Axis axis;
    StackView::Alignment alignment;
    StackView::Distribution distribution;
    std::vector<Rect> frames; ///< of boxes of 20 by 10 and 40 by 30 in a stack of 120 by 90 with a spacing of 10
};

TEST_F(LayoutTest, StacksAlignAndDistribute)
{
    using Axis = StackView::Axis;
    using Alignment = StackView::Alignment;
    using Distribution = StackView::Distribution;
    const StackAlignmentCase kCases[] = {
        {Axis::Horizontal, Alignment::Center, Distribution::FillEqually, {{0, 40, 55, 10}, {65, 30, 55, 30}}},
        {Axis::Vertical, Alignment::Trailing, Distribution::FillEqually, {{100, 0, 20, 40}, {80, 50, 40, 40}}},
        {Axis::Horizontal, Alignment::Fill, Distribution::Fill, {{0, 0, 20, 90}, {30, 0, 90, 90}}},
        {Axis::Horizontal, Alignment::FirstBaseline, Distribution::Fill, {{0, 20, 20, 10}, {30, 0, 90, 30}}}};
    for (const auto& one : kCases) {
        const auto stack = std::make_shared<StackView>();
        stack->setAxis(one.axis);
        stack->setAlignment(one.alignment);
        stack->setDistribution(one.distribution);
        stack->setSpacing(10);
        for (const auto& size : {Size{20, 10}, Size{40, 30}})
            stack->addArrangedSubview(std::make_shared<Box>(size));
        stack->setFrame({0, 0, 120, 90});
        stack->layoutIfNeeded();
        std::vector<Rect> frames;
        for (const auto& view : stack->subviews())
            frames.push_back(view->frame());
        EXPECT_EQ(frames, one.frames);
    }
}

TEST_F(LayoutTest, RoomComesInClasses)
{
    struct Case {
        Size window;
        Idiom idiom;
        SizeClass horizontal, vertical;
    };
    constexpr auto kCompact = SizeClass::Compact;
    constexpr auto kRegular = SizeClass::Regular;
    const Case kCases[] = {
        {{375, 667}, Idiom::Phone, kCompact, kRegular}, {{667, 375}, Idiom::Phone, kCompact, kCompact},
        {{736, 414}, Idiom::Phone, kRegular, kCompact}, {{768, 1024}, Idiom::Pad, kRegular, kRegular},
        {{1024, 768}, Idiom::Pad, kRegular, kRegular},  {{507, 768}, Idiom::Pad, kCompact, kRegular}};
    for (const auto& one : kCases) {
        device.setScreenBounds({0, 0, one.window.width, one.window.height});
        device.idiom = one.idiom;
        EXPECT_EQ(device.horizontalSizeClass(), one.horizontal) << one.window.width;
        EXPECT_EQ(device.verticalSizeClass(), one.vertical) << one.window.width;
    }
}

} // namespace
} // namespace tessel
