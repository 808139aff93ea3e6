#include "preview/PreviewBaseViewController.h"

#include "files/DRItem.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/Window.h"
#include "preview/PreviewItemManager.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Preview final : public PreviewBaseViewController {
public:
    [[nodiscard]] std::string className() const override { return "Preview"; }
    std::shared_ptr<Button> openInAppNavControllerButton() override { return openIn; }
    void updateProgress(const std::shared_ptr<Progress>& progress) override
    {
        shown.push_back(progress->fractionCompleted());
    }

    std::shared_ptr<Button> openIn;
    std::vector<double> shown;
};

class PreviewBaseViewControllerTest : public testing::Test {
protected:
    PreviewBaseViewControllerTest()
    {
        manager->setItem(DRItem::initWithURL(drive.file("Plan.txt", "the content")), false);
        preview->itemManager = manager;
        device.setScreenBounds({0, 0, 375, 667});
    }

    void show()
    {
        navigation->setViewControllers({std::make_shared<Preview>(), preview}, Animated::No);
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        platform.settle();
    }
    void layOut(const Size& size)
    {
        device.setScreenBounds({0, 0, size.width, size.height});
        preview->layoutView(device.screenBounds());
    }
    /// The lines of one function, without its name.
    [[nodiscard]] std::vector<std::string> linesOf(const std::string& function) const
    {
        std::vector<std::string> lines;
        for (const auto& line : platform.log->lines())
            if (const auto at = line.find(function + " (*) "); at != std::string::npos)
                lines.push_back(line.substr(5, at - 5) + line.substr(at + function.size() + 5));
        return lines;
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    Device& device = platform.services().device;
    std::shared_ptr<PreviewItemManager> manager = std::make_shared<PreviewItemManager>();
    std::shared_ptr<Preview> preview = std::make_shared<Preview>();
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{0, 0, 375, 667});
};

TEST_F(PreviewBaseViewControllerTest, LaysItsContentOutBetweenTheBars)
{
    device.statusBarFrame = {0, 0, 375, 20};
    show();
    const auto top = 20 + NavigationController::navigationBarHeight();
    const auto bottom = NavigationController::toolbarHeight();
    EXPECT_EQ(preview->scrollViewDefaultEdgeInsets(), (EdgeInsets{.top = top, .bottom = bottom}));
    layOut({375, 667});
    EXPECT_EQ(preview->scrollView->frame(), (Rect{0, 0, 375, 667}));
    EXPECT_EQ(preview->scrollView->contentInset(), (EdgeInsets{.top = top, .bottom = bottom}));
    EXPECT_EQ(preview->scrollView->contentOffset(), (Point{0, -top}));
    EXPECT_EQ(preview->scrollView->contentSize(), (Size{375, 667 - top - bottom}));
    EXPECT_EQ(preview->contentView->frame(), (Rect{0, 0, 375, 667 - top - bottom}));
    EXPECT_EQ(preview->wrapperView->frame(), (Rect{0, 0, 375, 667 - top - bottom - 17}));

    device.statusBarFrame = {0, 0, 20, 667};
    navigation->setToolbarHidden(true);
    layOut({667, 375});
    EXPECT_EQ(preview->wrapperView->frame(), (Rect{0, 0, 667, 375 - top}));

    device.idiom = Idiom::Pad;
    layOut({580, 500}); // a part of a tablet's screen, wider than high
    EXPECT_EQ(preview->parentBottomConstraint->constant(), -17);
    layOut({1024, 768});
    EXPECT_EQ(preview->parentBottomConstraint->constant(), 0);
    layOut({768, 1024});
    EXPECT_EQ(preview->wrapperView->frame(), (Rect{0, 0, 768, 1024 - top - 17}));
}

TEST_F(PreviewBaseViewControllerTest, PlacesItsButtonsByTheKindOfDevice)
{
    preview->openIn = std::make_shared<Button>("Open");
    preview->mode = 1;
    show();
    EXPECT_FALSE(navigation->toolbarHidden());
    const auto& tools = preview->toolbarItems();
    ASSERT_EQ(tools.size(), 5U);
    EXPECT_THAT((std::vector{tools[0], tools[2], tools[4]}),
                ElementsAre(preview->barButtonActionItem, preview->barButtonDeleteItem, preview->barButtonMoveItem));
    ASSERT_EQ(preview->navigationItem.rightItems().size(), 1U);
    EXPECT_EQ(preview->navigationItem.rightItems()[0]->customView(), preview->openIn);

    device.idiom = Idiom::Pad;
    manager->setItem(nullptr, false);
    preview->configureButtons();
    EXPECT_TRUE(navigation->toolbarHidden());
    const auto& items = preview->navigationItem.rightItems();
    ASSERT_EQ(items.size(), 5U);
    EXPECT_THAT((std::vector{items[0], items[2], items[4]}),
                ElementsAre(preview->barButtonActionItem, preview->barButtonDeleteItem, preview->barButtonMoveItem));
    for (const auto& item : {items[0], items[2], items[4]})
        EXPECT_FALSE(item->enabled());
    manager->setItem(DRItem::initWithURL(drive.url("Plan.txt")), false);
    preview->refreshItem();
    EXPECT_TRUE(items[0]->enabled() && items[2]->enabled() && items[4]->enabled());
}

TEST_F(PreviewBaseViewControllerTest, SaysWhatItsButtonsDo)
{
    preview->openIn = std::make_shared<Button>("Open");
    show();
    platform.log->clear();
    const auto plan = describe(drive.url("Plan.txt"));
    preview->openIn->press();
    EXPECT_THAT(linesOf("-[PreviewBaseViewController openInDefaultApp:]"),
                ElementsAre("[INFO] ================= Pressed Open in <app>",
                            "[WARNING] Failed to open document " + plan + " in default app"));
    preview->barButtonActionItem->press();
    EXPECT_THAT(linesOf("-[PreviewBaseViewController showDocumentActivities:]"),
                ElementsAre("[INFO] ================= Pressed Share (sheet) button (preview base)",
                            "[INFO] showDocumentActivities: " + plan));
    EXPECT_TRUE(manager->documentInteractionController);
    preview->barButtonMoveItem->press();
    EXPECT_THAT(linesOf("-[PreviewItemManager showMoveTarget:]"), ElementsAre("[INFO] Pressed Move (itemMgr)"));
    preview->barButtonDeleteItem->press();
    EXPECT_THAT(linesOf("-[PreviewBaseViewController showWarningAndDeleteDocument:]"),
                ElementsAre("[INFO] ================= Pressed Delete (preview base)"));
    const auto alert = std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->popoverAnchor.barButtonItem.lock(), preview->barButtonDeleteItem);
}

TEST_F(PreviewBaseViewControllerTest, LogsEachTwentiethOfAProgressOnce)
{
    const auto progress = std::make_shared<Progress>(platform.services().mainQueue, kProgressKindFile);
    const auto line = [&](std::int64_t done, std::int64_t total) {
        platform.log->clear();
        progress->update(done, total);
        preview->observeValueForKeyPath(kFractionCompletedKey, progress);
        const auto lines = linesOf("-[PreviewBaseViewController observeValueForKeyPath:ofObject:change:context:]");
        return lines.empty() ? "" : lines.front();
    };
    preview->refreshItem();
    EXPECT_EQ(line(3, 100), "[INFO] Progress 3.000000%: <Progress file 3/100>");
    EXPECT_EQ(line(7, 100), "[INFO] Progress 7.000000%: <Progress file 7/100>");
    EXPECT_EQ(line(13, 100), "[INFO] Progress 13.000000%: <Progress file 13/100>");
    EXPECT_EQ(line(14, 100), "[DEBUG] Progress 14.000000%: <Progress file 14/100>");
    preview->refreshItem();
    EXPECT_EQ(line(14, 100), "[INFO] Progress 14.000000%: <Progress file 14/100>");
    (void)line(999, 10'000);
    EXPECT_EQ(preview->lastProgressChunk, 1);
    (void)line(1, 0);
    (void)line(0, 0);
    EXPECT_EQ(preview->lastProgressChunk, 0);
    platform.log->clear();
    preview->observeValueForKeyPath("another key", progress);
    EXPECT_THAT(platform.log->lines(), IsEmpty());
}

TEST_F(PreviewBaseViewControllerTest, FollowsTheProgressOfItsFileUntilItEndsOrTheViewGoes)
{
    auto& service = platform.services().progress;
    const auto url = *manager->item()->resolvedURL();
    const auto blockLines = [&] { return linesOf("-[PreviewBaseViewController registerForProgress]_block_invoke"); };
    show();
    preview->registerForProgress();
    {
        const auto download = service.publishForFileURL(url);
        platform.settle();
        EXPECT_THAT(blockLines(),
                    ElementsAre("[DEBUG] ignoring progress with no progress done yet <Progress file 0/0>"));
        download.progress().update(1, 4);
        platform.settle();
        EXPECT_THAT(preview->shown, ElementsAre(0.25)) << "what was not done yet is followed all the same";
    }
    platform.settle();
    EXPECT_FALSE(preview->subscriber);

    platform.log->clear();
    preview->registerForProgress();
    const auto other = std::make_shared<Progress>(platform.services().mainQueue, "other");
    const ProgressService::Publication otherWork(service, url, other);
    const auto download = service.publishForFileURL(url);
    download.progress().update(1, 2);
    platform.settle();
    EXPECT_THAT(blockLines(),
                ElementsAre("[DEBUG] ignoring progress with different kind <Progress other 0/0>, kind = other",
                            "[DEBUG] got progress <Progress file 1/2>"));
    EXPECT_THAT(preview->shown, ElementsAre(0.25, 0.5));

    // Gone from the stack, the preview hears no more, and nobody keeps it.
    const auto weak = std::weak_ptr(preview);
    navigation->popViewController(Animated::No);
    platform.settle();
    EXPECT_FALSE(preview->subscriber);
    download.progress().update(2, 2);
    platform.settle();
    EXPECT_EQ(preview->shown.size(), 2U);
    preview.reset();
    platform.settle();
    EXPECT_TRUE(weak.expired());
}

TEST_F(PreviewBaseViewControllerTest, MovesAndSharesTheDocument)
{
    drive.tree("Work/ Full/Plan.txt/");
    manager->navigationController = navigation;
    show();
    const auto moveTo = [&](const char* folder) {
        preview->barButtonMoveItem->press();
        const auto picker =
            std::dynamic_pointer_cast<DocumentTargetSelectionController>(navigation->presentedViewController());
        ASSERT_NE(picker, nullptr);
        EXPECT_THAT(picker->itemsToMove(), ElementsAre(drive.url("Plan.txt")));
        picker->showFolder(drive.url(folder));
        EXPECT_TRUE(picker->topViewController()->toolbarItems().back()->press());
    };
    const auto alert = [&] {
        return std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
    };
    moveTo("Full");
    ASSERT_NE(alert(), nullptr) << "there is something of that name";
    navigation->dismiss(Animated::No);
    EXPECT_EQ(drive.read("Plan.txt"), "the content");

    preview->barButtonActionItem->press();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->title(), "Plan.txt");
    EXPECT_EQ(alert()->popoverAnchor.barButtonItem.lock(), preview->barButtonActionItem);
    EXPECT_NE(manager->documentInteractionController, nullptr);
    navigation->dismiss(Animated::No);

    moveTo("Work");
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(drive.read("Work/Plan.txt"), "the content");
    EXPECT_THAT(linesOf("-[PreviewItemManager showMoveTarget:]"),
                ElementsAre("[INFO] Pressed Move (itemMgr)", "[INFO] Pressed Move (itemMgr)"));
}

} // namespace
} // namespace tessel
