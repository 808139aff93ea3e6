#include "preview/PreviewDetailsViewController.h"

#include "files/DRItem.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "platform/ui/Window.h"
#include "preview/FileInfoStackView.h"
#include "preview/PreviewItemManager.h"
#include "preview/ThumbnailImageView.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>

namespace tessel {

static void PrintTo(const Rect& rect, std::ostream* stream)
{
    *stream << "{" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << "}";
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class OtherScreen final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "OtherScreen"; }
};

class PreviewDetailsViewControllerTest : public testing::Test {
protected:
    PreviewDetailsViewControllerTest()
    {
        DesktopOfTest(platform.desktop).editor("Pad", "text/plain;");
        manager->setItem(DRItem::initWithURL(drive.file("Report.txt", "content")), false);
        details->itemManager = manager;
        details->mode = 1;
    }

    void show(const Size& size, Idiom idiom = Idiom::Phone)
    {
        device.idiom = idiom;
        device.setScreenBounds({0, 0, size.width, size.height});
        navigation->setViewControllers({std::make_shared<OtherScreen>(), details}, Animated::No);
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        platform.settle();
        layOut(size);
    }
    void layOut(const Size& size)
    {
        device.setScreenBounds({0, 0, size.width, size.height});
        details->layoutView(device.screenBounds());
    }
    [[nodiscard]] Rect inContent(const std::shared_ptr<View>& view) const
    {
        return view->frameIn(*details->contentView);
    }
    [[nodiscard]] std::shared_ptr<FileInfoCell> row(std::size_t index) const
    {
        return std::static_pointer_cast<FileInfoCell>(details->fileInfoView->arrangedSubviews().at(index));
    }
    [[nodiscard]] double widthOf(const std::string& text) const
    {
        return device.textMeasurer().measure(text, FileInfoCell::font(), kUnlimitedWidth, 1).width;
    }

    /// On screen, with another name in the field.
    TextField& edit(const std::string& name)
    {
        show({375, 667});
        EXPECT_TRUE(details->filenameTextField->becomeFirstResponder());
        details->filenameTextField->setTextByUser(name);
        platform.log->clear();
        return *details->filenameTextField;
    }
    void press(const std::string& title) const
    {
        for (const auto& items : {details->navigationItem.leftItems(), details->navigationItem.rightItems()})
            for (const auto& item : items)
                if (item->title() == title)
                    return void(item->press());
        FAIL() << title;
    }
    [[nodiscard]] bool triedToRename() const
    {
        return testing::Value(platform.log->lines(), testing::Contains(HasSubstr("renameItemAtURL:toName:]")));
    }
    [[nodiscard]] bool hasRenamingBar() const { return details->navigationItem.title() == "Rename File"; }
    [[nodiscard]] std::shared_ptr<AlertController> alert() const
    {
        return std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    Device& device = platform.services().device;
    std::shared_ptr<PreviewItemManager> manager = std::make_shared<PreviewItemManager>();
    std::shared_ptr<PreviewDetailsViewController> details = std::make_shared<PreviewDetailsViewController>();
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{});
};

struct Layout {
    std::string name;
    Size screen;
    Idiom idiom;
    Rect thumbnail;
    Rect details;
    Rect field;
    double infoY;     ///< in the details
    Rect button = {}; ///< no size: in the bar
};

std::ostream& operator<<(std::ostream& stream, const Layout& layout)
{
    return stream << layout.name;
}

class DetailsLayoutTest : public PreviewDetailsViewControllerTest, public testing::WithParamInterface<Layout> {};

// The bars are 44 high; on a tablet there is only the upper one. A column ends 17 above its end.
//   the name: 1 + 7 + 1.3 * 20.4 + 7 + 1 = 42.52          five rows: 5 * 18 + 4 * 10 = 130
//   the details on a phone: 42.52 + 15 + 130 = 187.52     on a tablet 15 + 1 + 15 and a button of 41 more: 259.52
// The thumbnail takes what the details leave, or half the width, where the details are in the middle of the height.
INSTANTIATE_TEST_SUITE_P(
    Screens, DetailsLayoutTest,
    testing::Values(
        // 667 - 2 * 44 - 17 = 562; 562 - 187.52 = 374.48
        Layout{"PhonePortrait", {375, 667}, Idiom::Phone, {0, 0, 375, 374}, {0, 374, 375, 188}, {8, 382, 359, 27}, 58},
        // 375 - 2 * 44 = 287; (287 - 187.52) / 2 = 49.74; half of 667 is 333.5
        Layout{
            "PhoneLandscape", {667, 375}, Idiom::Phone, {0, 0, 334, 287}, {334, 50, 333, 187}, {342, 58, 317, 26}, 57},
        // 1024 - 44 - 17 = 963; 963 - 259.52 = 703.48; the title has 13 letters of 12 points
        Layout{"TabletPortrait",
               {768, 1024},
               Idiom::Pad,
               {0, 0, 768, 703},
               {0, 703, 768, 260},
               {8, 711, 752, 27},
               58,
               {306, 922, 156, 41}},
        // 768 - 44 = 724; (724 - 259.52) / 2 = 232.24
        Layout{"TabletLandscape",
               {1024, 768},
               Idiom::Pad,
               {0, 0, 512, 724},
               {512, 232, 512, 260},
               {520, 240, 496, 27},
               58,
               {512, 451, 156, 41}}),
    [](const auto& layout) { return layout.param.name; });

TEST_P(DetailsLayoutTest, PlacesItsViews)
{
    const auto& expected = GetParam();
    const auto check = [&] {
        EXPECT_EQ(inContent(details->thumbnailView), expected.thumbnail);
        EXPECT_EQ(inContent(details->fileDetailsView), expected.details);
        EXPECT_EQ(inContent(details->filenameTextField), expected.field);
        // In its middle; between margins of 8 where the rows begin at the leading edge.
        const bool isColumn = expected.screen.width < expected.screen.height;
        const auto width = isColumn ? 60 + 10 + row(4)->valueLabel->frame().width : expected.details.width - 16;
        EXPECT_EQ(details->fileInfoView->frame().width, width);
        EXPECT_NEAR(details->fileInfoView->frame().x, (expected.details.width - width) / 2, 0.5);
        EXPECT_EQ(details->fileInfoView->frame().y, expected.infoY);
        if (expected.button.height > 0)
            EXPECT_EQ(inContent(details->openInAppButton), expected.button);
        else
            EXPECT_FALSE(details->openInAppButton->superview());
    };
    show(expected.screen, expected.idiom);
    check();
    layOut({expected.screen.height, expected.screen.width}); // held the other way, and back
    EXPECT_NE(inContent(details->thumbnailView), expected.thumbnail);
    layOut(expected.screen);
    check();
    EXPECT_THAT(platform.log->lines(), Not(testing::Contains(HasSubstr("onstraint")))) << "none contradicts another";

    ASSERT_TRUE(details->filenameTextField->becomeFirstResponder());
    details->layoutView(device.screenBounds());
    EXPECT_EQ(details->filenameTextField->frame().width, expected.details.width) << "while it is edited";
}

TEST_F(PreviewDetailsViewControllerTest, IsAColumnUnlessTheScreenIsWiderThanHigh)
{
    show({375, 667});
    layOut({500, 500});
    EXPECT_EQ(inContent(details->thumbnailView).width, 500);
    EXPECT_EQ(details->filenameTextField->textAlignment(), TextAlignment::Center);
    layOut({501, 500});
    EXPECT_EQ(inContent(details->fileDetailsView).width, 250);
    EXPECT_EQ(details->filenameTextField->textAlignment(), TextAlignment::Natural);
}

TEST_F(PreviewDetailsViewControllerTest, DatesGetShorterAsTheWindowNarrows)
{
    show({375, 667});
    const auto date = [&](DateStyle style) { return *manager->item()->friendlyCreationDate(style); };
    // Margins of 16, names of 8 letters of 7.5, and 10 between the columns.
    const auto roomFor = [&](DateStyle style) { return 16 + 60 + 10 + std::ceil(widthOf(date(style))); };
    const std::pair<double, DateStyle> kWidths[] = {{roomFor(DateStyle::Long), DateStyle::Long},
                                                    {roomFor(DateStyle::Long) - 1, DateStyle::Medium},
                                                    {roomFor(DateStyle::Medium) - 1, DateStyle::Short},
                                                    {roomFor(DateStyle::Long), DateStyle::Long}};
    for (const auto& [width, style] : kWidths) {
        layOut({width, 667});
        EXPECT_EQ(details->fileInfoView->creationDateCell()->valueLabel->text(), date(style)) << width;
        for (std::size_t index = 0; index < 5; ++index)
            EXPECT_EQ(row(index)->nameLabel->frame().width, 60) << index;
    }
}

TEST_F(PreviewDetailsViewControllerTest, OffersTheApplicationInTheBarOrTheView)
{
    show({375, 667});
    ASSERT_EQ(details->navigationItem.rightItems().size(), 1U);
    EXPECT_EQ(details->navigationItem.rightItems()[0]->title(), "Open in “Pad”");

    details = std::make_shared<PreviewDetailsViewController>();
    details->itemManager = manager;
    show({768, 1024}, Idiom::Pad);
    EXPECT_EQ(details->navigationItem.rightItems().size(), 5U);
    details->openInAppButton->press();
    EXPECT_THAT(platform.log->lines(),
                testing::Contains(HasSubstr("openInDefaultApp:] (*) ================= Pressed")));

    details = std::make_shared<PreviewDetailsViewController>();
    manager->setItem(DRItem::initWithURL(drive.file("Report.unknown", "")), false);
    details->itemManager = manager;
    show({768, 1024}, Idiom::Pad);
    EXPECT_FALSE(details->openInAppButton);
    EXPECT_EQ(details->fileDetailsView->arrangedSubviews().size(), 2U);
}

TEST_F(PreviewDetailsViewControllerTest, ShowsOnlyCancelAndDoneWhileTheNameIsEdited)
{
    show({375, 667});
    const auto before = details->navigationItem.rightItems();
    auto& field = *details->filenameTextField;
    EXPECT_FALSE(field.insertText("\n")) << "never a line break";
    ASSERT_TRUE(field.becomeFirstResponder());
    EXPECT_EQ(field.selection(), (TextRange{6, 0})) << "before the extension";
    EXPECT_EQ(details->navigationItem.title(), "Rename File");
    ASSERT_EQ(details->navigationItem.leftItems().size(), 1U);
    ASSERT_EQ(details->navigationItem.rightItems().size(), 1U);
    EXPECT_EQ(details->navigationItem.leftItems()[0]->title(), "Cancel");
    EXPECT_EQ(details->navigationItem.rightItems()[0]->title(), "Done");
    EXPECT_TRUE(details->navigationItem.leftItemsSupplementBackButton());
    EXPECT_FALSE(navigation->backTarget());
    field.clear();
    EXPECT_FALSE(field.returnKeyEnabled());
    press("Done");
    EXPECT_EQ(details->navigationItem.title(), "");
    EXPECT_THAT(details->navigationItem.leftItems(), IsEmpty());
    EXPECT_EQ(details->navigationItem.rightItems(), before);
    EXPECT_TRUE(navigation->backTarget());

    manager->setItem(nullptr, false);
    EXPECT_FALSE(field.becomeFirstResponder()) << "there is nothing to rename";
}

TEST_F(PreviewDetailsViewControllerTest, RenamesHoweverEditingEnds)
{
    const std::function<void(TextField&)> kEndings[] = {
        [&](TextField&) { press("Done"); },
        [&](TextField&) { details->fileInfoView->tap(); },
        [](TextField& field) { field.pressReturn(); },
        [](TextField& field) { field.insertText("\n"); },
        [](TextField& field) { field.resignFirstResponder(); },
    };
    int number = 0;
    for (const auto& end : kEndings) {
        const auto name = "Budget " + std::to_string(++number);
        auto& field = edit(name);
        end(field);
        EXPECT_FALSE(field.isFirstResponder()) << name;
        EXPECT_FALSE(hasRenamingBar()) << name;
        EXPECT_EQ(details->originalFilename, name);
        const auto renamed = drive.url(name + ".txt");
        ASSERT_TRUE(std::filesystem::exists(renamed.path())) << name;
        manager->setItem(DRItem::initWithURL(renamed), false);
        details->refreshItem();
        EXPECT_EQ(field.text(), name + ".txt");
    }
    EXPECT_FALSE(std::filesystem::exists(drive.url("Report.txt").path()));
}

TEST_F(PreviewDetailsViewControllerTest, RenamesNothingWithoutANewName)
{
    auto& field = edit("Budget.txt");
    press("Cancel");
    EXPECT_EQ(field.text(), "Report.txt");
    EXPECT_FALSE(field.isFirstResponder());

    for (const std::string same : {"", "Report.txt"}) {
        edit(same);
        details->view().tap();
        EXPECT_EQ(field.text(), "Report.txt") << same;
        EXPECT_FALSE(field.isFirstResponder()) << same;
        EXPECT_FALSE(triedToRename()) << same;
    }

    edit("Budget.txt");
    navigation->popViewController(Animated::No);
    platform.settle();
    EXPECT_FALSE(field.isFirstResponder());
    EXPECT_FALSE(triedToRename()) << "the view was left";
    EXPECT_TRUE(std::filesystem::exists(drive.url("Report.txt").path()));
}

TEST_F(PreviewDetailsViewControllerTest, GoesOnEditingANameThatIsRefused)
{
    drive.file("Taken.txt", "another one");
    auto& field = edit("Taken.txt");
    press("Done");
    EXPECT_TRUE(field.isFirstResponder());
    EXPECT_TRUE(hasRenamingBar());
    EXPECT_EQ(field.text(), "Taken.txt");
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title(), "The name “Taken” with extension “.txt” is already taken.");
    EXPECT_EQ(drive.read("Taken.txt"), "another one");

    platform.log->clear();
    EXPECT_TRUE(field.resignFirstResponder()) << "under the alert";
    EXPECT_FALSE(triedToRename());
    ASSERT_TRUE(field.becomeFirstResponder());
    alert()->choose(alert()->actions().front());
    EXPECT_FALSE(field.resignFirstResponder());
    ASSERT_TRUE(alert());
    alert()->choose(alert()->actions().front());
    press("Cancel");
    EXPECT_FALSE(field.isFirstResponder());
    EXPECT_EQ(field.text(), "Report.txt");
}

TEST_F(PreviewDetailsViewControllerTest, TellsTheLogOfARename)
{
    show({375, 667});
    platform.log->clear();
    auto& field = *details->filenameTextField;
    field.becomeFirstResponder();
    field.setTextByUser("Budget.txt");
    field.pressReturn();
    std::vector<std::string> lines;
    for (const auto& line : platform.log->lines())
        if (line.find("PreviewDetailsViewController") != std::string::npos)
            lines.push_back(line);
    const auto from = [](const std::string& operation, const std::string& text) {
        return "(TSD)[DEBUG] -[PreviewDetailsViewController " + operation + ":] (*) " + text;
    };
    EXPECT_THAT(lines,
                ElementsAre(from("textFieldShouldBeginEditing", "ShouldBeginEditing: YES"),
                            from("textFieldDidBeginEditing", "DidBeginEditing 'Report.txt' = 'Report.txt'"),
                            from("textFieldShouldEndEditing", "ShouldEndEditing: old:'Report.txt', new:'Budget.txt'"),
                            from("textFieldDidEndEditing", "DidEndEditing: old:'Budget.txt', new:'Budget.txt'")));
}

TEST_F(PreviewDetailsViewControllerTest, KeepsWhatIsBeingTypedUntilTheItemHasAnotherName)
{
    auto& field = edit("Bud");
    field.setSelection({1, 0});
    drive.file("Report.txt", "more content");
    manager->setItem(DRItem::initWithURL(drive.url("Report.txt")), false);
    layOut({667, 375}); // which refreshes
    EXPECT_EQ(field.text(), "Bud");
    EXPECT_EQ(field.selection(), (TextRange{1, 0}));

    manager->setItem(DRItem::initWithURL(drive.file("Moved.txt", "")), false);
    details->refreshItem();
    EXPECT_EQ(field.text(), "Moved.txt");
    EXPECT_EQ(details->originalFilename, "Moved.txt");
}

struct KeyboardCase {
    Size screen;
    Idiom idiom;
    double height;
    double inset;  ///< at the bottom
    double offset; ///< vertical
};

class DetailsKeyboardTest : public PreviewDetailsViewControllerTest,
                            public testing::WithParamInterface<KeyboardCase> {};

// inset = height - what is free beneath the details + 30         wanted = the field's y - 44 - 30
// most = the content's height - the screen's + inset
INSTANTIATE_TEST_SUITE_P(Keyboards, DetailsKeyboardTest,
                         testing::Values(
                             // 216 - 17 + 30; the field's y is 382; most: 579 - 667 + 229
                             KeyboardCase{{375, 667}, Idiom::Phone, 216, 229, 141},
                             // 20 - 17 + 30; most: 579 - 667 + 33 is below 0
                             KeyboardCase{{375, 667}, Idiom::Phone, 20, 33, 0},
                             // 400 - 0 + 30; wanted: 240 - 44 - 30; most: 724 - 768 + 430 = 386
                             KeyboardCase{{1024, 768}, Idiom::Pad, 400, 430, 166},
                             // 162 - 0 + 30; wanted: 58 - 44 - 30 is below 0
                             KeyboardCase{{667, 375}, Idiom::Phone, 162, 192, 0},
                             // the name's y is (240 - 187.52) / 2 + 8 = 34, which the bar would cover:
                             // 34 - 44 - 30
                             KeyboardCase{{667, 328}, Idiom::Phone, 162, 192, -40}));

TEST_P(DetailsKeyboardTest, LeavesTheNameInSight)
{
    const auto& expected = GetParam();
    show(expected.screen, expected.idiom);
    const auto& scroll = *details->scrollView;
    const auto insets = details->scrollViewDefaultEdgeInsets();
    device.keyboardWillShow({{0, 300, 375, expected.height}, 0.25, 0});
    EXPECT_EQ(scroll.contentInset(), (EdgeInsets{.top = 44, .bottom = expected.inset}));
    EXPECT_EQ(scroll.contentOffset(), (Point{0, expected.offset}));
    device.keyboardWillHide({{0, 300, 375, expected.height}, 0.25, 0});
    EXPECT_EQ(scroll.contentInset(), insets);
    EXPECT_EQ(scroll.contentOffset(), (Point{0, -44})) << "as it was";
}

TEST_F(PreviewDetailsViewControllerTest, MovesAsTheKeyboardMoves)
{
    show({375, 667});
    std::optional<Animation> seen;
    details->scrollView->changed = [&](ViewChange) { seen = device.animation; };
    const std::pair<int, std::uint32_t> kOptions[] = {{0, 5}, {1, 5 + 65'536}, {2, 5 + 2 * 65'536}, {3, 5 + 3 * 65'536},
                                                      {4, 5}, {7, 5}};
    for (const auto& [curve, options] : kOptions) {
        device.keyboardWillShow({{0, 400, 375, 200.0 + curve}, 0.25, curve});
        ASSERT_TRUE(seen) << curve;
        EXPECT_EQ(seen->options, options) << curve;
        EXPECT_EQ(seen->duration, 0.25);
        EXPECT_EQ(seen->delay, 0);
        seen.reset();
    }
    device.keyboardWillHide({{0, 400, 375, 216}, 0.5, 2});
    EXPECT_EQ(seen->duration, 0.5);
    EXPECT_FALSE(device.animation);
    seen.reset();
    ASSERT_TRUE(details->filenameTextField->becomeFirstResponder());
    EXPECT_FALSE(seen) << "there is no keyboard on the screen";

    navigation->popViewController(Animated::No);
    platform.settle();
    device.keyboardWillShow({{0, 400, 375, 216}, 0.25, 0});
    EXPECT_FALSE(seen) << "the view is gone";
}

} // namespace
} // namespace tessel
