#include "platform/qt/thumbnails/ThumbnailSwitch.h"
#include "platform/qt/lists/DocumentLook.h"

#include "platform/cloud/UserDefaults.h"
#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

namespace tessel::qt {
namespace {

TEST(ThumbnailSwitchTest, LeavesDocumentsTheirIconsWhenTheUserWantsNoThumbnails)
{
    const InstalledPlatform platform;
    const ListRow row{RowKind::File, "a.png", platform.drive.url("a.png"), 1, {}, Date{1}, {}, false, {}, false};
    auto& defaults = platform::installed().defaults;
    EXPECT_NE(thumbnailSource(row), "");
    defaults.set("orvane.TesselDriveApp.ShowsThumbnails", false);
    EXPECT_EQ(thumbnailSource(row), "");
    defaults.set("orvane.TesselDriveApp.ShowsThumbnails", true);
    EXPECT_NE(thumbnailSource(row), "");
}

} // namespace
} // namespace tessel::qt
