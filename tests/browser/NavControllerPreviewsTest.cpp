#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "platform/base/KeyedArchive.h"
#include "platform/documents/PeekController.h"
#include "platform/documents/SearchController.h"
#include "platform/linux/cloud/FileActivities.h"
#include "platform/ui/StateCoder.h"
#include "preview/GlanciaItemController.h"
#include "preview/PreviewDetailsViewController.h"
#include "preview/PreviewItemManager.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <thread>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

/// The program with a drive of the test's own, on a desktop without applications: all documents are previewed.
class NavControllerPreviewsTest : public testing::Test {
protected:
    NavControllerPreviewsTest()
    {
        drive.tree("Box.unknown/ Projects/ Projects/Deep/ Projects/Deep/Plan.txt Archive.zip");
        drive.file("Report.txt", "first");
        drive.file("Notes.txt", "notes");
        application.launch({});
        platform.settle();
        platform.log->clear();
    }
    ~NavControllerPreviewsTest() override
    {
        delegate.rootWindow->setRootViewController(nullptr);
        platform.settle();
    }

    [[nodiscard]] std::shared_ptr<NavController> navigation() const
    {
        return std::dynamic_pointer_cast<NavController>(delegate.rootWindow->rootViewController());
    }
    [[nodiscard]] static std::shared_ptr<GlanciaItemController> preview()
    {
        return GlanciaItemController::defaultController();
    }
    /// Opens a document as a tap on its row does.
    void open(const char* name)
    {
        const auto list = std::dynamic_pointer_cast<DocumentListController>(navigation()->viewControllers().front());
        navigation()->documentListControllerDidSelectItemAtURL(*list, drive.url(name));
        platform.settle();
    }
    [[nodiscard]] bool shows(const std::shared_ptr<ViewController>& controller) const
    {
        return navigation()->topViewController() == controller;
    }
    [[nodiscard]] bool showsList() const { return navigation()->getTopDocumentListController() != nullptr; }
    /// How often a line that ends like this was logged.
    [[nodiscard]] long count(const std::string& end) const
    {
        const auto lines = platform.log->lines();
        return std::ranges::count_if(lines, [&](const auto& line) { return line.ends_with(end); });
    }
    /// Lets time pass, for other threads and on the program's clock.
    void waitFor(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            platform.turn(0.05);
        }
    }
    /// Until the presenter has heard of a change, and what it does about it has been done.
    void waitForRefresh()
    {
        waitFor([&] { return count("presentedItemDidChange: " + at("Report.txt")) > 0; });
        platform.turn(2);
    }
    /// Makes sure that the file system's clock ticks between two changes.
    static void tick() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }
    [[nodiscard]] std::string at(std::string_view name) const { return drive.url(name).absoluteString(); }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    AppDelegate delegate;
    Application application{delegate, platform.stateStore()};
};

TEST_F(NavControllerPreviewsTest, ChoosesTheViewByWhatTheDocumentIs)
{
    open("Report.txt");
    EXPECT_TRUE(shows(preview()));
    EXPECT_EQ(preview()->currentPreviewItem(), drive.url("Report.txt"));
    EXPECT_THAT(platform.log->lines(),
                Contains("(TSD)[DEBUG] -[PreviewItemManager prepareToPreviewItem:] (*) Preview: Using "
                         "GlanciaItemController, File Exists"));
    open("Notes.txt"); // over a preview: in its place
    EXPECT_EQ(navigation()->viewControllers().size(), 2U);
    EXPECT_EQ(preview()->currentPreviewItem(), drive.url("Notes.txt"));

    navigation()->pressBack();
    platform.settle();
    EXPECT_EQ(navigation()->itemManager, nullptr);
    open("Archive.zip");
    const auto details = std::dynamic_pointer_cast<PreviewDetailsViewController>(navigation()->topViewController());
    ASSERT_TRUE(details);
    EXPECT_EQ(navigation()->itemManager->detailsViewController, details);
    const auto manager = navigation()->itemManager;
    navigation()->pressBack();
    platform.settle();
    EXPECT_EQ(manager->detailsViewController, nullptr);
}

TEST_F(NavControllerPreviewsTest, ThePlaceInADocumentComesBackWithThatDocumentOnly)
{
    open("Report.txt");
    preview()->setPlace(12.25);
    StateCoder state;
    StateCoder session;
    navigation()->encodeRestorableState(state);
    navigation()->encodeSession(session);
    const auto comeBack = [&](const char* key, const Value& value) {
        navigation()->pressBack();
        platform.settle();
        auto values = session.values();
        values[key] = value;
        navigation()->decodeSession(StateCoder(values));
        navigation()->decodeRestorableState(state);
        platform.settle();
        return preview()->place();
    };
    EXPECT_EQ(comeBack("place", 12.25), 12.25);
    EXPECT_EQ(comeBack("document", drive.url("Notes.txt")), 0);
    for (const auto& damaged : {Value(-3.0), Value(std::nan("")), Value("12"), Value(Value::Array{1.0}), Value()})
        EXPECT_EQ(comeBack("place", damaged), 0);
    EXPECT_EQ(preview()->currentPreviewItem(), drive.url("Report.txt"));
}

TEST_F(NavControllerPreviewsTest, ABurstOfChangesIsOneRefresh)
{
    open("Report.txt");
    platform.log->clear();
    for (const char* content : {"second", "third", "fourth"}) {
        tick();
        drive.file("Report.txt", content);
    }
    waitForRefresh();
    EXPECT_EQ(count("Refreshing " + at("Report.txt")), 1);
    EXPECT_EQ(count("Refreshing the current preview item"), 1);

    platform.log->clear();
    fs::permissions(drive.url("Report.txt").path(), fs::perms::owner_all); // another state of the same content
    waitForRefresh();
    EXPECT_EQ(count("Refreshing " + at("Report.txt")), 1);
    EXPECT_EQ(count("Refreshing the current preview item"), 0);
}

TEST_F(NavControllerPreviewsTest, FollowsADocumentThatIsSavedByReplacingIt)
{
    open("Report.txt");
    platform.log->clear();
    tick();
    fs::rename(drive.file("Report.txt~", "second").path(), drive.url("Report.txt").path());
    waitForRefresh();
    EXPECT_TRUE(shows(preview()));
    EXPECT_EQ(count("Refreshing the current preview item"), 1);
}

TEST_F(NavControllerPreviewsTest, FollowsADocumentThatIsMoved)
{
    open("Report.txt");
    platform.log->clear();
    fs::rename(drive.url("Report.txt").path(), drive.url("Projects/Final.txt").path());
    waitFor([&] { return preview()->currentPreviewItem() == drive.url("Projects/Final.txt"); });
    platform.turn(3);
    EXPECT_EQ(navigation()->viewControllers().size(), 2U);
    EXPECT_EQ(count("Previewing " + at("Projects/Final.txt")), 1) << "shown once";
    EXPECT_EQ(navigation()->itemManager->item()->url(), drive.url("Projects/Final.txt"));

    const auto relaya = navigation()->itemManager->relayaActivity();
    ASSERT_TRUE(relaya);
    EXPECT_THAT(*relaya->userInfo.at("DocumentURL").get<std::string>(), EndsWith("/Projects/Final.txt"));
}

TEST_F(NavControllerPreviewsTest, LeavesADocumentThatIsGone)
{
    const auto leaves = [&](const std::function<void(const fs::path&)>& remove) {
        drive.file("Report.txt", "again");
        open("Report.txt");
        EXPECT_TRUE(shows(preview()));
        remove(drive.url("Report.txt").path());
        waitFor([&] { return showsList(); });
        EXPECT_EQ(navigation()->viewControllers().size(), 1U);
    };
    leaves([](const auto& path) { fs::remove(path); });
    leaves([&](const auto& path) {
        drive.folder(".Trash");
        fs::rename(path, drive.url(".Trash/Report.txt").path());
    });
    leaves([&](const auto& path) {
        fs::rename(path, drive.url().deletingLastPathComponent().appending("outside.txt").path());
    });
}

TEST_F(NavControllerPreviewsTest, CatchesUpWithWhatHappenedWhileTheProgramWasAway)
{
    open("Report.txt");
    application.resignActive();
    EXPECT_EQ(navigation()->itemManager->relayaActivity(), nullptr);
    tick();
    drive.file("Report.txt", "second");
    platform.turn(3);
    platform.log->clear();
    application.becomeActive();
    platform.turn(3);
    EXPECT_EQ(count("Refreshing the current preview item"), 1);

    application.resignActive();
    fs::remove(drive.url("Report.txt").path());
    application.becomeActive();
    platform.settle();
    EXPECT_TRUE(showsList());
}

TEST_F(NavControllerPreviewsTest, RefreshesAPackageOfWhichAPartIsDeleted)
{
    drive.tree("Album.lookbook/ Album.lookbook/page");
    const auto manager = PreviewItemManager::newItemManagerWithMode(0, navigation());
    manager->previewItem(DRItem::initWithURL(drive.url("Album.lookbook")));
    platform.settle();
    platform.log->clear();
    bool isAllowed = false;
    manager->accommodatePresentedSubitemDeletionAtURL(drive.url("Album.lookbook/page"),
                                                      [&](const auto& error) { isAllowed = !error; });
    EXPECT_TRUE(isAllowed);
    EXPECT_EQ(count("Refreshing " + at("Album.lookbook")), 0);
    platform.turn(1);
    EXPECT_EQ(count("Refreshing " + at("Album.lookbook")), 1);
}

TEST_F(NavControllerPreviewsTest, EndsTheSearchBeforeAPreviewOfAResult)
{
    navigation()->getTopDocumentListController()->startSearch("Plan");
    const auto search = std::dynamic_pointer_cast<SearchController>(navigation()->presentedViewController());
    ASSERT_TRUE(search);
    ASSERT_TRUE(platform.runUntil([&] { return !search->isBusy() && search->results().size() == 1; }));
    search->pressResult(0);
    platform.settle();
    EXPECT_EQ(navigation()->presentedViewController(), nullptr);
    EXPECT_TRUE(shows(preview()));
}

TEST_F(NavControllerPreviewsTest, WarpsToADocumentOrAFolder)
{
    const auto titles = [&] {
        std::vector<std::string> result;
        for (const auto& controller : navigation()->viewControllers())
            result.push_back(controller->className());
        return result;
    };
    const std::string list = "DocumentListController";
    EXPECT_TRUE(navigation()->warpToNewURL(drive.url("Projects/Deep/Plan.txt"), PreviewItemManager::kDetails));
    platform.settle();
    EXPECT_THAT(titles(), ElementsAre(list, list, list, "PreviewDetailsViewController"));

    EXPECT_TRUE(navigation()->warpToNewURL(drive.url("Projects"), PreviewItemManager::kQuickPreview));
    EXPECT_EQ(navigation()->itemManager->item()->url(), drive.url("Projects"));
    platform.settle();
    EXPECT_THAT(titles(), ElementsAre(list, list));

    EXPECT_FALSE(navigation()->warpToNewURL(drive.url("Nowhere/Plan.txt"), PreviewItemManager::kQuickPreview));
    EXPECT_THAT(titles(), ElementsAre(list, list));
}

TEST_F(NavControllerPreviewsTest, PeeksAndPops)
{
    const auto list = navigation()->getTopDocumentListController();
    ASSERT_TRUE(PeekController::peek(list, drive.url("Projects")));
    auto peek = std::dynamic_pointer_cast<PeekController>(navigation()->presentedViewController());
    ASSERT_TRUE(peek);
    EXPECT_EQ(peek->topViewController()->className(), "PeekFolderViewController");
    peek->release();
    platform.settle();
    EXPECT_EQ(navigation()->presentedViewController(), nullptr);
    EXPECT_EQ(navigation()->topViewController(), list);

    ASSERT_TRUE(PeekController::peek(list, drive.url("Report.txt")));
    peek = std::dynamic_pointer_cast<PeekController>(navigation()->presentedViewController());
    EXPECT_EQ(peek->topViewController(), preview());
    platform.settle();
    EXPECT_TRUE(preview()->isVisible());
    peek->pop();
    platform.settle();
    EXPECT_TRUE(shows(preview()));
    EXPECT_EQ(preview()->navigationController(), navigation());
    EXPECT_THAT(platform.log->lines(), Contains(EndsWith("showing cached Glancia from Pressa")));

    drive.link("Link", "Report.txt");
    EXPECT_FALSE(PeekController::peek(list, drive.url("Link")));
}

TEST_F(NavControllerPreviewsTest, OnlyTheDocumentThatIsShownIsFollowed)
{
    const auto list = navigation()->getTopDocumentListController();
    ASSERT_TRUE(PeekController::peek(list, drive.url("Report.txt")));
    std::dynamic_pointer_cast<PeekController>(navigation()->presentedViewController())->release();
    EXPECT_EQ(navigation()->itemManager, nullptr) << "an abandoned peek shows nothing later on";

    list->performAction(ListAction::Pop, drive.url("Notes.txt"), nullptr, {}); // from a menu
    platform.settle();
    EXPECT_TRUE(shows(preview()));
    EXPECT_EQ(preview()->currentPreviewItem(), drive.url("Notes.txt"));

    const auto manager = navigation()->itemManager;
    EXPECT_FALSE(navigation()->warpToNewURL(drive.url("Nowhere/Plan.txt"), 0));
    EXPECT_EQ(navigation()->itemManager, manager) << "what is shown is followed on";
    open("Report.txt");
    manager->accommodatePresentedItemDeletionWithCompletionHandler([](const auto&) {});
    platform.settle();
    EXPECT_TRUE(shows(preview())) << "the deletion of another document";

    navigation()->pressBack();
    platform.settle();
    ASSERT_TRUE(PeekController::peek(list, drive.url("Report.txt")));
    platform.settle();
    fs::remove(drive.url("Report.txt").path());
    waitFor([&] { return navigation()->presentedViewController() == nullptr; });
}

TEST_F(NavControllerPreviewsTest, ALinkThatIsRenamedStaysTheItem)
{
    drive.link("Way", "Report.txt");
    const auto list = navigation()->getTopDocumentListController();
    list->performAction(ListAction::Info, drive.url("Way"), nullptr, {});
    platform.settle();
    fs::rename(drive.url("Way").path(), drive.url("Path").path());
    waitFor([&] { return navigation()->itemManager->item()->url() != drive.url("Way"); });
    EXPECT_EQ(navigation()->itemManager->item()->url(), drive.url("Path"));
}

TEST_F(NavControllerPreviewsTest, ComesBackToTheDocumentThatWasShown)
{
    const auto restored = [&](const URL& url, std::int64_t mode) {
        StateCoder coder;
        coder.encode("url", url);
        coder.encode("PreviewMode", mode);
        navigation()->setupInitialViewController();
        navigation()->decodeRestorableState(coder);
        platform.settle();
        return navigation()->topViewController()->className();
    };
    EXPECT_EQ(restored(drive.url("Report.txt"), 1), "PreviewDetailsViewController");
    StateCoder coder;
    navigation()->encodeRestorableState(coder);
    EXPECT_EQ(coder.values(), (Value::Dictionary{{"url", drive.url("Report.txt")}, {"PreviewMode", std::int64_t{1}}}));
    EXPECT_EQ(restored(drive.url("Projects"), 0), "DocumentListController");
    EXPECT_EQ(restored(drive.url("Gone.txt"), 0), "DocumentListController");
}

TEST_F(NavControllerPreviewsTest, OffersTheDocumentToOtherInstances)
{
    const auto folder = activitiesIn(drive.url().deletingLastPathComponent().appending("home"));
    const auto offered = [&]() -> std::string {
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder.path(), ignored)) {
            std::ifstream file(entry.path());
            const auto activity = keyedArchive::unarchived(std::string(std::istreambuf_iterator<char>(file), {}));
            const auto* values = activity ? activity->get<Value::Dictionary>() : nullptr;
            if (values && *values->at("type").get<std::string>() == "orvane.quillbox.viewing")
                return *values->at("userInfo").get<Value::Dictionary>()->at("DocumentURL").get<std::string>();
        }
        return "";
    };
    open("Report.txt");
    waitFor([&] { return offered() == "drive:/orvane~Quillbox/Report.txt"; });
    navigation()->pressBack();
    waitFor([&] { return offered().empty(); });
}

} // namespace
} // namespace tessel
