#include "platform/documents/PreviewController.h"

#include "platform/cloud/CloudService.h"
#include "platform/documents/TextContent.h"
#include "platform/files/FileManager.h"
#include "platform/linux/preview/LinuxDocumentReader.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/HeldDownloads.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/PaintedDocuments.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class PreviewControllerTest : public testing::Test, public PreviewControllerDataSource {
protected:
    PreviewControllerTest()
    {
        preview->dataSource = this;
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
    }

    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const override
    {
        return item ? 1 : 0;
    }
    [[nodiscard]] URL previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t) const override
    {
        return *item;
    }

    void open(const URL& url)
    {
        item = url;
        preview->reloadData();
        if (!preview->navigationController())
            navigation->setViewControllers({preview}, Animated::No);
    }
    bool becomes(PreviewState state)
    {
        return platform.runUntil([&] { return preview->state() == state && !preview->isBusy(); });
    }
    /// Opens it and waits for the end. @returns what stands in place of content
    std::string shownFor(const URL& url)
    {
        open(url);
        EXPECT_TRUE(platform.runUntil([&] { return !preview->isBusy(); }));
        return preview->detail();
    }
    [[nodiscard]] URL evicted(std::string_view name, std::string_view content)
    {
        const auto url = platform.drive.file(top + std::string(name), content);
        EXPECT_EQ(platform::installed().cloud.evictDocument(url), std::nullopt);
        EXPECT_FALSE(std::filesystem::exists(url.path()));
        return url;
    }

    InstalledPlatform platform{std::initializer_list<InstalledPlatform::Library>{}};
    const std::string top = "orvane~Quillbox/";
    PaintedDocuments decoder{platform.services().mainQueue};
    platform::Scope scope{servicesWith(decoder)};
    std::optional<URL> item;
    std::shared_ptr<PreviewController> preview = std::make_shared<PreviewController>();
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{0, 0, 375, 667});
};

/// The same with downloads that wait for the test.
class PreviewDownloadTest : public PreviewControllerTest {
protected:
    ~PreviewDownloadTest() override { preview.reset(); }

    HeldDownloads downloads{platform.services().coordination};
    LinuxDocumentReader reader{
        {platform.services().mainQueue, downloads, platform.services().resources, platform.services().types}};
    platform::Scope readerScope{servicesWith(reader)};
};

TEST_F(PreviewControllerTest, FindsOutWhatADocumentIs)
{
    decoder.known["Photo.jpg"] = {ContentKind::Image, {}, {1000, 700}, 1, 0};
    decoder.known["Locked.pdf"] = {ContentKind::Pages, ContentProblem::Encrypted, {}, 0, 0};
    const auto& drive = platform.drive;

    shownFor(drive.file("Plan.txt", "one\ntwo\nthree"));
    ASSERT_TRUE(preview->content().text);
    EXPECT_THAT(preview->content().text->firstRows(), ElementsAre("one", "two", "three"));
    EXPECT_EQ(preview->content().text->lineCount(), 3U);
    EXPECT_EQ(preview->title(), "Plan.txt");
    EXPECT_EQ(decoder.inspections, 0) << "a text needs no decoder";
    shownFor(drive.file("Photo.jpg", "it does not matter what is in it"));
    EXPECT_EQ(preview->content().facts.size, (Size{1000, 700}));
    EXPECT_FALSE(preview->content().text);
    shownFor(drive.file("makefile", "all:\n"));
    EXPECT_TRUE(preview->content().text);

    EXPECT_EQ(shownFor(drive.file("Data.bin", std::string("\0\1\2", 3))), "Document · 3 bytes");
    EXPECT_EQ(shownFor(drive.file("Locked.pdf", "%PDF")), "The document is protected by a password.");
    EXPECT_EQ(shownFor(drive.file("Nothing.txt")), "The document is empty.");
    EXPECT_EQ(shownFor(drive.url("Gone.txt")), "The document is not there any more.");
    EXPECT_EQ(preview->buttonTitle(), "Try Again");
    ASSERT_EQ(::mkfifo(drive.url("pipe.txt").path().c_str(), 0600), 0);
    EXPECT_THAT(shownFor(drive.url("pipe.txt")), StartsWith("The document can’t be read."));
    EXPECT_THAT(shownFor(drive.folder("Album.rtfd")), StartsWith("RTF document with attachments"));
    EXPECT_EQ(preview->state(), PreviewState::Shown);
}

TEST_F(PreviewControllerTest, ReadsOnceForABurstAndShowsWhatWasReadBeforeUntilThen)
{
    shownFor(platform.drive.file("Plan.txt", "old"));
    const auto before = preview->reading();
    platform.drive.file("Plan.txt", "new");
    for (int i = 0; i < 3; ++i)
        preview->refreshCurrentPreviewItem();
    ASSERT_TRUE(platform.runUntil([&] {
        EXPECT_EQ(preview->state(), PreviewState::Shown);
        EXPECT_TRUE(preview->content().text);
        return !preview->isBusy();
    }));
    EXPECT_THAT(preview->content().text->firstRows(), ElementsAre("new"));
    EXPECT_EQ(preview->reading(), before + 1);

    preview->refreshCurrentPreviewItem();
    platform.services().mainQueue.runOne();
    preview->refreshCurrentPreviewItem(); // while it is being read
    preview->reloadData();
    ASSERT_TRUE(becomes(PreviewState::Shown));
    EXPECT_EQ(preview->reading(), before + 3) << "once more for what came meanwhile";
}

TEST_F(PreviewControllerTest, AnAnswerAboutTheDocumentBeforeIsNotShown)
{
    decoder.known["a.jpg"] = {ContentKind::Image, {}, {1, 1}, 1, 0};
    open(platform.drive.file("a.jpg", "x"));
    ASSERT_TRUE(platform.runUntil([&] { return decoder.inspections == 1; }));
    item = platform.drive.file("b.txt", "b");
    preview->reloadData();
    EXPECT_EQ(preview->title(), "b.txt");
    EXPECT_EQ(preview->state(), PreviewState::Looking);
    EXPECT_EQ(preview->detail(), "");
    ASSERT_TRUE(becomes(PreviewState::Shown));
    EXPECT_TRUE(preview->content().text);
    open(platform.drive.file("c.txt", "c"));
    preview->dataSource = nullptr;
    navigation->setViewControllers({}, Animated::No);
    preview.reset();
    platform.settle();
}

TEST_F(PreviewControllerTest, ReadsNothingWhileItIsNotOnScreen)
{
    const auto url = evicted("Far.txt", "far away");
    item = url;
    preview->reloadData();
    preview->view();
    preview->refreshCurrentPreviewItem();
    platform.settle();
    EXPECT_EQ(preview->state(), PreviewState::Looking);
    EXPECT_FALSE(std::filesystem::exists(url.path()));

    navigation->setViewControllers({preview}, Animated::No);
    ASSERT_TRUE(becomes(PreviewState::Shown));
    EXPECT_THAT(preview->content().text->firstRows(), ElementsAre("far away"));
    const std::weak_ptr<TextContent> text = preview->content().text;
    navigation->setViewControllers({}, Animated::No);
    platform.settle();
    EXPECT_TRUE(text.expired()) << "a preview that has gone keeps nothing open";
}

TEST_F(PreviewControllerTest, ContentThatIsLostIsFetchedOnce)
{
    decoder.known["Photo.jpg"] = {ContentKind::Image, {}, {1000, 700}, 1, 0};
    const auto url = platform.drive.file(top + "Photo.jpg", "photo");
    shownFor(url);
    ASSERT_EQ(platform::installed().cloud.evictDocument(url), std::nullopt);
    preview->contentHasProblem(ContentProblem::Gone);
    ASSERT_TRUE(becomes(PreviewState::Shown));
    EXPECT_TRUE(std::filesystem::exists(url.path()));
    preview->contentHasProblem(ContentProblem::Gone);
    EXPECT_EQ(preview->state(), PreviewState::Failed);
}

TEST_F(PreviewDownloadTest, ADownloadIsShownCancelledAtOnceAndBegunAgain)
{
    const auto url = evicted("Far.txt", std::string(1'000'000, 'x'));
    open(url);
    ASSERT_TRUE(platform.runUntil([&] { return preview->fraction() == 0.5; }));
    EXPECT_EQ(preview->state(), PreviewState::Downloading);
    EXPECT_EQ(preview->detail(), "Plain text document · 1 MB");
    EXPECT_EQ(preview->buttonTitle(), "Cancel");

    preview->pressButton();
    EXPECT_EQ(preview->state(), PreviewState::Cancelled);
    EXPECT_FALSE(preview->isBusy());
    EXPECT_EQ(preview->buttonTitle(), "Download");
    ASSERT_TRUE(platform.runUntil([&] {
        platform.services().mainQueue.async([] {}); // nobody tells of the end of what nobody waits for
        return downloads.waiting() == 0;
    }));
    EXPECT_FALSE(std::filesystem::exists(url.path()));

    downloads.release();
    preview->pressButton();
    ASSERT_TRUE(becomes(PreviewState::Shown));
    EXPECT_EQ(preview->content().text->lineCount(), 1U);
}

TEST_F(PreviewDownloadTest, ADocumentThatIsDeletedMeanwhileIsGone)
{
    open(evicted("Far.txt", "four"));
    ASSERT_TRUE(platform.runUntil([&] { return preview->fraction() == 0.5; }));
    ASSERT_EQ(platform.services().files.removeItem(*item, std::nullopt), std::nullopt);
    downloads.release();
    ASSERT_TRUE(platform.runUntil([&] { return !preview->isBusy(); }));
    EXPECT_EQ(preview->detail(), "The document is not there any more.");
}

TEST_F(PreviewControllerTest, SharesFromTheToolbarOfAPhoneAndTheBarOfATablet)
{
    auto& device = platform.services().device;
    open(platform.drive.file(top + "Plan.txt", "plan"));
    ASSERT_TRUE(becomes(PreviewState::Shown));
    const auto share = [&](const BarButtonItems& bar) {
        ASSERT_EQ(bar.size(), 1U);
        bar.front()->press();
        const auto sheet = std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
        ASSERT_TRUE(sheet);
        EXPECT_EQ(sheet->title(), "Plan.txt");
        EXPECT_EQ(sheet->popoverAnchor.barButtonItem.lock(), bar.front());
        sheet->cancel();
        platform.settle();
    };
    share(preview->toolbarItems());
    EXPECT_FALSE(navigation->toolbarHidden());
    device.idiom = Idiom::Pad;
    preview->layoutView({0, 44, 1024, 724});
    share(preview->navigationItem.rightItems());
    EXPECT_TRUE(preview->toolbarItems().empty());
    device.idiom = Idiom::Phone;
}

} // namespace
} // namespace tessel
