#include "platform/documents/PreviewController.h"
#include "tests/platform/console/ConsoleShellFixture.h"
#include "tests/support/PaintedDocuments.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::HasSubstr;

class ConsolePreviewTest : public ConsoleShellFixture, public PreviewControllerDataSource {
protected:
    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const override
    {
        return 1;
    }
    [[nodiscard]] URL previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t) const override
    {
        return *item;
    }

    /// The screen of a document's preview, without its title, back button and toolbar.
    std::string screenOf(const URL& url)
    {
        item = url;
        const auto preview = std::make_shared<PreviewController>();
        preview->dataSource = this;
        navigation->setViewControllers({preview}, Animated::No);
        preview->reloadData();
        EXPECT_TRUE(
            platform.runUntil([&] { return !preview->isBusy() || (decoder.isBusy && decoder.inspections > 4); }));
        const std::string toolbar = "toolbar: Share\n";
        auto screen = run({"screen"});
        EXPECT_THAT(screen, HasSubstr(toolbar));
        screen.erase(screen.find(toolbar), toolbar.size());
        return screen.substr(screen.find('\n') + 1);
    }

    PaintedDocuments decoder{platform.services().mainQueue};
    platform::Scope scope{servicesWith(decoder)};
    std::optional<URL> item;
};

TEST_F(ConsolePreviewTest, ShowsWhatADocumentIs)
{
    decoder.known = {{"a.jpg", {ContentKind::Image, {}, {1000, 700}, 1, 0}},
                     {"b.pdf", {ContentKind::Pages, {}, {595, 842}, 12, 0}},
                     {"c.pdf", {ContentKind::Pages, ContentProblem::Damaged, {}, 0, 0}}};
    const auto& drive = platform.drive;
    EXPECT_EQ(screenOf(drive.file("Plan.txt", "one\n\nthe\x1B[2J third")),
              "preview: Plan.txt | text | 3 lines\ntext: one\ntext: \ntext: the␛[2J third\nok\n");
    EXPECT_EQ(screenOf(drive.file("a.jpg", "x")), "preview: a.jpg | image | 1000 × 700\nok\n");
    EXPECT_EQ(screenOf(drive.file("b.pdf", "x")), "preview: b.pdf | pdf | 12 pages\nok\n");
    EXPECT_EQ(screenOf(drive.file("Data.zip", "PK\1\2")), "preview: Data.zip | ZIP archive · 4 bytes\nok\n");
    EXPECT_EQ(screenOf(drive.file("c.pdf", "x")), "preview: c.pdf | The document is damaged, or is not what its name "
                                                  "says.\nbutton: Try Again\nok\n");
    decoder.isBusy = true;
    EXPECT_EQ(screenOf(drive.file("d.pdf", "x")), "preview: d.pdf | PDF document · 1 byte\nloading: d.pdf\nok\n");
    decoder.isBusy = false;
    std::string lines;
    for (int line = 1; line <= 50; ++line)
        lines += std::to_string(line) + "\n";
    const auto screen = screenOf(drive.file("Long.txt", lines));
    EXPECT_THAT(screen, HasSubstr("| 50 lines\ntext: 1\n"));
    EXPECT_THAT(screen, HasSubstr("\ntext: 40\nok\n"));
}

TEST_F(ConsolePreviewTest, ItsButtonIsPressedLikeAnyOther)
{
    const auto url = platform.drive.url("Gone.txt");
    EXPECT_EQ(screenOf(url), "preview: Gone.txt | The document is not there any more.\nbutton: Try Again\nok\n");
    platform.drive.file("Gone.txt", "back again");
    EXPECT_EQ(run({"tap \"Try Again\""}), "ok\n");
    EXPECT_TRUE(platform.runUntil([&] {
        return run({"screen"}) == "title: Gone.txt\npreview: Gone.txt | text | 1 line\ntext: back again\n"
                                  "toolbar: Share\nok\n";
    }));
}

} // namespace
} // namespace tessel
