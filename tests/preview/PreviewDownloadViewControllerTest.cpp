#include "preview/PreviewDownloadViewController.h"

#include "files/DRItem.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "preview/PieProgressIndicatorView.h"
#include "preview/PreviewItemManager.h"
#include "preview/ThumbnailImageView.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

class OtherScreen final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "OtherScreen"; }
};

class PreviewDownloadViewControllerTest : public testing::Test {
protected:
    PreviewDownloadViewControllerTest()
    {
        manager->setItem(placeholder("Far.txt"), false);
        details = PreviewDownloadViewController::detailsViewControllerForItem(*manager->item());
        details->itemManager = manager;
        platform.services().device.setScreenBounds({0, 0, 375, 667});
        navigation->setViewControllers({std::make_shared<OtherScreen>(), details}, Animated::No);
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
        platform.settle();
    }
    // What follows a download holds its view until that disappears.
    ~PreviewDownloadViewControllerTest() override
    {
        navigation->setViewControllers({}, Animated::No);
        platform.settle();
    }

    [[nodiscard]] std::shared_ptr<DRItem> placeholder(const std::string& name) const
    {
        const auto url = platform.drive.url(name);
        EXPECT_EQ(writePlaceholder(url, {name, 9, {}, {}, "public.plain-text", name, {}}), std::nullopt);
        return DRItem::initWithURL(url);
    }
    [[nodiscard]] ProgressService::Publication download(const URL& url)
    {
        return platform.services().progress.publishForFileURL(url);
    }
    /// How far the pie shows it is; below 0 while there is none.
    [[nodiscard]] double shown()
    {
        platform.settle();
        const auto& pie = *std::static_pointer_cast<PreviewDownloadViewController>(details)->progressView;
        return pie.hidden() ? -1 : static_cast<double>(pie.progress());
    }

    InstalledPlatform platform;
    std::shared_ptr<PreviewItemManager> manager = std::make_shared<PreviewItemManager>();
    std::shared_ptr<PreviewDetailsViewController> details;
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{});
};

TEST_F(PreviewDownloadViewControllerTest, IsForDocumentsThatAreNotOnTheDevice)
{
    const auto isFor = [](const DRItem& item) {
        return std::dynamic_pointer_cast<PreviewDownloadViewController>(
                   PreviewDownloadViewController::detailsViewControllerForItem(item)) != nullptr;
    };
    EXPECT_TRUE(isFor(*manager->item()));
    EXPECT_FALSE(isFor(*DRItem::initWithURL(platform.drive.file("Here.txt", ""))));
}

TEST_F(PreviewDownloadViewControllerTest, ShowsOneDownloadAfterTheOther)
{
    const auto url = *manager->item()->resolvedURL();
    EXPECT_EQ(shown(), -1);
    {
        const auto first = download(url);
        EXPECT_EQ(shown(), -1) << "nothing is known of it";
        first.progress().update(1, 4);
        EXPECT_EQ(shown(), 0.25);
        const auto& pie = *std::static_pointer_cast<PreviewDownloadViewController>(details)->progressView;
        details->layoutView({0, 0, 375, 667});
        const auto thumbnail = details->thumbnailView->frameIn(*details->wrapperView);
        EXPECT_EQ(pie.frame(), (Rect{(375.0 - 64) / 2 + 0.5, thumbnail.height / 2 - 32, 64, 64})) << "in its middle";
        first.progress().cancel();
        first.progress().update(2, 4);
        EXPECT_EQ(shown(), -1) << "cancelled";
    }
    EXPECT_EQ(shown(), -1);
    const auto second = download(url);
    second.progress().update(3, 4);
    EXPECT_EQ(shown(), 0.75);
}

TEST_F(PreviewDownloadViewControllerTest, FollowsItsDocumentAndOutlivesIt)
{
    const auto first = download(*manager->item()->resolvedURL());
    first.progress().update(1, 2);
    EXPECT_EQ(shown(), 0.5);

    manager->setItem(placeholder("Moved.txt"), false);
    details->refreshItem();
    EXPECT_EQ(shown(), -1);
    const auto second = download(*manager->item()->resolvedURL());
    second.progress().update(3, 4);
    first.progress().update(2, 2);
    EXPECT_EQ(shown(), 0.75) << "of the document that is shown now";

    manager.reset();
    details->refreshItem();
    EXPECT_EQ(shown(), -1) << "nobody knows what is shown";

    const auto weak = std::weak_ptr(details);
    navigation->popViewController(Animated::No);
    platform.settle();
    details.reset();
    platform.settle();
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace tessel
