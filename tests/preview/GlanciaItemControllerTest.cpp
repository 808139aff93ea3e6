#include "preview/GlanciaItemController.h"

#include "files/DRItem.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "preview/PreviewItemManager.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::Contains;
using testing::ElementsAre;

class GlanciaItemControllerTest : public testing::Test {
protected:
    [[nodiscard]] static std::shared_ptr<PreviewItemManager> managerOf(const URL& url)
    {
        auto manager = std::make_shared<PreviewItemManager>();
        manager->setItem(DRItem::initWithURL(url), false);
        return manager;
    }

    /// What the preview says: its icon and its texts.
    static std::vector<std::string> shownBy(const GlanciaItemController& preview)
    {
        return {preview.icon() ? preview.icon()->name() : "", preview.title(), preview.detail()};
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(GlanciaItemControllerTest, OneControllerShowsOneDocumentAfterTheOther)
{
    const auto preview = GlanciaItemController::defaultController();
    ASSERT_EQ(writePlaceholder(drive.url("Far.pdf"), {"Far.pdf", 4096, {}, {}, "com.adobe.pdf", "id", {}}),
              std::nullopt);
    const auto near = managerOf(drive.file("Near.txt", "four"));
    const auto far = managerOf(drive.url("Far.pdf"));
    preview->glanciaNewItem(near);
    EXPECT_THAT(shownBy(*preview), ElementsAre("text-x-generic", "Near.txt", ""));
    GlanciaItemController::defaultController()->glanciaNewItem(far);
    EXPECT_THAT(shownBy(*preview), ElementsAre("application-pdf x-office-document", "Far.pdf", ""));
    EXPECT_EQ(preview->currentPreviewItem(), drive.url("Far.pdf"));
    EXPECT_FALSE(std::filesystem::exists(drive.url("Far.pdf").path()))
        << "a preview that is not on screen gets nothing";

    preview->glanciaNewItem(std::make_shared<PreviewItemManager>());
    EXPECT_EQ(preview->numberOfPreviewItemsInPreviewController(*preview), 0U);
    EXPECT_THAT(shownBy(*preview), ElementsAre("", "", ""));
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[DEBUG] -[GlanciaItemController glanciaNewItem:] (*) Reloading the preview's data"));
}

TEST_F(GlanciaItemControllerTest, ForwardsItsButtonsToTheManagerOfTheShownItem)
{
    auto manager = managerOf(drive.file("Near.txt", "four"));
    const auto preview = std::make_shared<GlanciaItemController>(manager);
    const auto navigation = std::make_shared<NavigationController>();
    navigation->setViewControllers({preview}, Animated::No);
    const auto window = std::make_shared<Window>(Rect{0, 0, 375, 667});
    window->setRootViewController(navigation);
    window->makeKeyAndVisible();
    platform.settle();
    EXPECT_TRUE(preview->isVisible());
    const auto& buttons = preview->navigationItem.rightItems();
    ASSERT_EQ(buttons.size(), 2U);

    platform.log->clear();
    buttons[1]->press();
    const std::string move = "-[GlanciaItemController showMoveTarget:] (*) ";
    EXPECT_THAT(platform.log->lines(), ElementsAre("(TSD)[INFO] " + move + "================= Pressed Move (GL)",
                                                   "(TSD)[INFO] " + move + "Pressed Move",
                                                   "(TSD)[INFO] -[PreviewItemManager showMoveTarget:] (*) Pressed Move "
                                                   "(itemMgr)"));

    const auto press = [&](std::size_t action) {
        buttons[0]->press();
        const auto alert = std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
        ASSERT_TRUE(alert);
        EXPECT_EQ(alert->popoverAnchor.barButtonItem.lock(), buttons[0]);
        alert->choose(alert->actions().at(action));
        platform.settle();
    };
    press(1);
    EXPECT_TRUE(std::filesystem::exists(drive.url("Near.txt").path()));
    press(0);
    EXPECT_FALSE(std::filesystem::exists(drive.url("Near.txt").path()));
    const std::string deletion =
        "(TSD)[INFO] -[PreviewItemManager showWarningAndDeleteDocument:barButton:]_block_invoke "
        "(*) ================= Delete was ";
    EXPECT_THAT(platform.log->lines(), Contains(deletion + "Cancelled (itemMgr)"));
    EXPECT_THAT(platform.log->lines(), Contains(deletion + "Confirmed (itemMgr)"));

    manager.reset();
    buttons[0]->press();
    EXPECT_FALSE(navigation->presentedViewController()) << "nobody is there to ask";
    navigation->setViewControllers({}, Animated::No);
    platform.settle();
    EXPECT_FALSE(preview->isVisible());
}

TEST_F(GlanciaItemControllerTest, OnlyPDFDocumentsCanBeMarkedUp)
{
    const GlanciaItemController preview;
    for (const auto& [name, isPDF] : std::initializer_list<std::pair<const char*, bool>>{
             {"a.pdf", true}, {"a.PDF", true}, {"a.txt", false}, {"pdf", false}, {"a.pdf.none", false}}) {
        EXPECT_EQ(preview.previewControllerCanEditItem(preview, drive.url(name)), isPDF) << name;
        EXPECT_EQ(preview.previewControllerShouldSaveEditedItem(preview, drive.url(name)), isPDF) << name;
    }
}

} // namespace
} // namespace tessel
