#include "platform/qt/player/PlayerConfinement.h"

#include "platform/linux/files/FileDescriptor.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

namespace tessel::qt {
namespace {

bool opens(const std::string& path, int flags)
{
    return FileDescriptor(::open(path.c_str(), flags | O_CLOEXEC, 0600)).isOpen();
}

bool hasSocket(int family)
{
    return FileDescriptor(::socket(family, SOCK_STREAM, 0)).isOpen();
}

sockaddr_un addressOf(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return address;
}

/// @returns whether a process of its own, the home folder of which is given, does it when it is confined
bool whenConfined(const std::string& home, const std::function<bool()>& deed)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("HOME", home.c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home + "/.config").c_str(), 1);
        ::_exit(confinePlayer() && deed() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(PlayerConfinementTest, ReachesTheSoundServerAndItsSettingsButNoneOfTheUsersFiles)
{
    const TemporaryDrive home;
    const auto document = home.file("Diary.txt", "secret").path();
    const auto cookie = home.file(".config/pulse/cookie", "for the sound server").path();
    const FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto address = addressOf(home.url("native").path());
    ASSERT_EQ(::bind(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(server.get(), 1), 0);
    const auto confined = [&](const std::function<bool()>& deed) { return whenConfined(home.url().path(), deed); };
    EXPECT_TRUE(confined([&] {
        const FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM, 0));
        return ::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }));
    EXPECT_TRUE(confined([] { return opens("/usr", O_RDONLY | O_DIRECTORY) && opens("/dev/null", O_RDWR); }));
    const auto refused = [&](const std::function<bool()>& deed) { return deed() && confined([&] { return !deed(); }); };
    EXPECT_TRUE(refused([] { return hasSocket(AF_INET); }));
    EXPECT_TRUE(refused([] { return ::kill(::getppid(), 0) == 0; }));
    EXPECT_TRUE(confined([] {
        char name[] = "/bin/true";
        char* const arguments[] = {name, nullptr};
        return ::execv(name, arguments) == -1 && errno == EPERM;
    }));
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) <= 0)
        GTEST_SKIP() << "this kernel cannot tell folders apart";
    EXPECT_TRUE(confined([&] { return opens(cookie, O_RDONLY); }));
    EXPECT_TRUE(refused([&] { return opens(document, O_RDONLY); }));
    EXPECT_TRUE(refused([&] { return opens(home.url().path(), O_RDONLY | O_DIRECTORY); }));
    EXPECT_TRUE(refused([&] { return opens(document + " new", O_WRONLY | O_CREAT); }));
    EXPECT_TRUE(refused([&] { return opens(cookie, O_RDWR); }));
}

} // namespace
} // namespace tessel::qt
