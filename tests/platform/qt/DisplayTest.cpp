#include "platform/qt/Display.h"
#include "tests/support/TemporaryDrive.h"

#include <QByteArray>
#include <QLocalServer>

#include <gmock/gmock.h>

#include <map>

namespace tessel::qt {
namespace {

using testing::HasSubstr;
using testing::Optional;

/// The variables that choose a display are what a test sets, and come back after it.
class DisplayTest : public testing::Test {
protected:
    DisplayTest()
    {
        for (const auto* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY", "XDG_RUNTIME_DIR"}) {
            before.emplace(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
            qunsetenv(name);
        }
        qputenv("XDG_RUNTIME_DIR", folder.url().path().c_str());
    }
    ~DisplayTest() override
    {
        for (const auto& [name, value] : before)
            value ? qputenv(name, *value) : qunsetenv(name);
    }

    void listen(const std::string& name)
    {
        ASSERT_TRUE(server.listen(QString::fromStdString(folder.url().appending(name).path())));
    }

    std::map<const char*, std::optional<QByteArray>> before;
    TemporaryDrive folder{"run"};
    QLocalServer server;
};

TEST_F(DisplayTest, TakesWaylandOnlyWhenItsServerAnswers)
{
    qputenv("WAYLAND_DISPLAY", "wayland-7");
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("wayland-7")));
    folder.file("wayland-7"); // what a server that was killed leaves behind
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("wayland-7")));
    qputenv("WAYLAND_DISPLAY", "wayland-8");
    listen("wayland-8");
    EXPECT_EQ(chooseDisplay(), std::nullopt);
    EXPECT_EQ(chosenPlatform(), "wayland");
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM")); // other programs inherit it
}

TEST_F(DisplayTest, SaysWhatDoesNotAnswer)
{
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("neither WAYLAND_DISPLAY nor DISPLAY")));
    qputenv("DISPLAY", ":4711");
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr(":4711")));
    qputenv("DISPLAY", "no display at all");
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("does not answer")));
}

TEST_F(DisplayTest, ObeysTheUsersChoiceUnlessItsServerDoesNotAnswer)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    EXPECT_EQ(chooseDisplay(), std::nullopt);
    EXPECT_EQ(chosenPlatform(), "");
    qputenv("QT_QPA_PLATFORM", "xcb");
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("xcb")));
    qputenv("QT_QPA_PLATFORM", "wayland;xcb");
    EXPECT_THAT(chooseDisplay(), Optional(HasSubstr("does not answer")));
}

} // namespace
} // namespace tessel::qt
