#include "platform/linux/apps/DesktopSharing.h"

#include "platform/documents/DocumentInteractionController.h"
#include "platform/linux/apps/DesktopApplications.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tessel {
namespace {

using testing::ElementsAre;

/// A screen with a share sheet, on a desktop whose programs tell what they are given.
class DesktopSharingTest : public testing::Test {
protected:
    DesktopSharingTest()
    {
        ::unsetenv("WAYLAND_DISPLAY");
        ::unsetenv("DISPLAY");
        if (::mkfifo(pipe.c_str(), 0600) != 0)
            throw std::runtime_error("no pipe");
        reader = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC); // also for writing: no end of file between two programs
        navigation->setViewControllers({std::make_shared<NavigationController>()}, Animated::No);
        window->setRootViewController(navigation);
        window->makeKeyAndVisible();
    }
    ~DesktopSharingTest() override
    {
        ::unsetenv("DISPLAY");
        ::close(reader);
    }

    /// A program that tells what it was given.
    void program(const std::string& name) const
    {
        desktop.script("bin/" + name, "(printf '%s,' \"$@\"; cat; printf '\\0') > '" + pipe + "'");
    }
    void setUpSharing() { platform.services().device.sharing = sharing.sharing(); }
    /// What it was, or how far that had come after 30 seconds.
    [[nodiscard]] std::string told() const
    {
        std::string text;
        pollfd ready{reader, POLLIN, 0};
        for (char byte = 0; ::poll(&ready, 1, 30'000) == 1 && ::read(reader, &byte, 1) == 1 && byte != 0;)
            text.push_back(byte);
        return text;
    }
    [[nodiscard]] std::shared_ptr<AlertController> sheet() const
    {
        return std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
    }
    [[nodiscard]] std::vector<std::string> offered(const URL& document)
    {
        navigation->dismiss(Animated::No);
        DocumentInteractionController(document).presentOptionsMenu(Rect(), nullptr, Animated::No);
        std::vector<std::string> titles;
        for (const auto& action : sheet()->actions())
            titles.push_back(action->title());
        return titles;
    }
    void choose(const std::string& title)
    {
        const auto& actions = sheet()->actions();
        const auto action = std::ranges::find(actions, title, &AlertAction::title);
        ASSERT_NE(action, actions.end());
        EXPECT_TRUE(sheet()->choose(*action));
    }

    InstalledPlatform platform;
    const DesktopOfTest desktop{platform.desktop};
    const TemporaryDrive& drive = platform.drive;
    const std::string pipe = platform.desktop.url("told").path();
    int reader = -1;
    DesktopSharing sharing{
        {.configuration = {}, .data = {}, .programs = {platform.desktop.url("bin").path()}, .desktops = {}},
        dynamic_cast<const DesktopApplications&>(platform::installed().apps),
        platform.services().log};
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{0, 0, 375, 667});
};

TEST_F(DesktopSharingTest, OffersOnlyWhatCanBeDone)
{
    const auto document = drive.file("Plan & more.txt", "plan");
    setUpSharing();
    EXPECT_THAT(offered(document), ElementsAre("Cancel"));
    desktop.script("bin/editor", "exit 0");
    desktop.entry("a", "editor %f", "MimeType=text/plain;");
    desktop.entry("b", "editor %f", "MimeType=text/plain;");
    desktop.associations("[Default Applications]\ntext/plain=b.desktop;\n");
    program("xdg-email");
    EXPECT_THAT(offered(document), ElementsAre("Open in “b”", "Open in “a”", "Cancel"));

    desktop.entry("mailer", "editor %u", "MimeType=x-scheme-handler/mailto;");
    EXPECT_THAT(offered(document), ElementsAre("Open in “b”", "Open in “a”", "Send by E-Mail", "Cancel"));
    choose("Send by E-Mail");
    EXPECT_EQ(told(), "--utf8,--attach," + document.path() + ",");

    ::setenv("DISPLAY", ":0", 1);
    program("xclip");
    setUpSharing();
    EXPECT_THAT(offered(drive.url("away.txt")),
                ElementsAre("Open in “b”", "Open in “a”", "Copy Path", "Copy Link", "Cancel"))
        << "what is not on the device is not handed over as a file";
    EXPECT_THAT(offered(document), ElementsAre("Open in “b”", "Open in “a”", "Send by E-Mail", "Copy", "Copy Path",
                                               "Copy Link", "Cancel"));
    choose("Copy");
    EXPECT_EQ(told(), "-selection,clipboard,-target,text/uri-list," + document.absoluteString() + "\r\n");
    EXPECT_THAT(offered(document), testing::Contains("Copy Path"));
    choose("Copy Path");
    EXPECT_EQ(told(), "-selection,clipboard,-target,UTF8_STRING," + document.path());
    EXPECT_THAT(offered(document), testing::Contains("Copy Link"));
    choose("Copy Link");
    EXPECT_EQ(told(), "-selection,clipboard,-target,UTF8_STRING,tesseldriveapp:" + document.absoluteString().substr(7));
}

TEST_F(DesktopSharingTest, SendsFilesOnTheDeviceToOtherDevices)
{
    auto& shared = platform.services().device.sharing;
    shared.pairedDevices = {{"a", "Phone"}};
    shared.sendToDevice = [](const auto&, const auto&, const auto&) { FAIL() << "there is nothing to send"; };
    const auto document = drive.file("Plan.txt", "plan");
    EXPECT_THAT(offered(drive.folder("Plans")), ElementsAre("Cancel"));
    EXPECT_THAT(offered(drive.url("away.txt")), ElementsAre("Cancel"));
    EXPECT_THAT(offered(document), ElementsAre("Send to “Phone”", "Cancel"));

    std::filesystem::remove(document.path());
    choose("Send to “Phone”");
    EXPECT_EQ(sheet()->title(), "“Plan.txt” couldn’t be sent to “Phone”.");
}

} // namespace
} // namespace tessel
