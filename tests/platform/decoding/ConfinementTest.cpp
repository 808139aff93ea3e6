#include "platform/qt/decoder/Confinement.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/qt/decoder/Sanitizers.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/landlock.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace tessel::qt {
namespace {

bool opens(const std::string& path, int flags)
{
    return FileDescriptor(::open(path.c_str(), flags | O_CLOEXEC, 0600)).isOpen();
}

bool startsProgram()
{
    std::string name = "/bin/true";
    char* arguments[] = {name.data(), nullptr};
    pid_t child = -1;
    return ::posix_spawn(&child, name.c_str(), nullptr, nullptr, arguments, nullptr) == 0 &&
           ::waitpid(child, nullptr, 0) == child;
}

bool knowsFolders()
{
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

/// Runs work in a process of its own that is confined before. @returns whether it says so
bool whenConfined(const std::vector<std::string>& folders, const std::function<bool()>& work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(confine(folders) && work() ? 0 : 1);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(ConfinementTest, LeavesWhatReadingADocumentNeeds)
{
    const TemporaryDrive drive;
    drive.file("fonts/a", "content");
    const auto font = drive.url("fonts/a").path();
    EXPECT_TRUE(whenConfined({drive.url("fonts").path()}, [&] { return opens(font, O_RDONLY); }));
    EXPECT_TRUE(whenConfined({}, [] { return opens("/usr", O_RDONLY | O_DIRECTORY); }));
    EXPECT_TRUE(whenConfined({}, [] {
        const FileDescriptor picture(::memfd_create("picture", MFD_CLOEXEC));
        return ::ftruncate(picture.get(), 1'000'000) == 0;
    }));
    EXPECT_TRUE(whenConfined({}, [] {
        int value = 0;
        std::thread([&] { value = 1; }).join();
        return value == 1;
    }));
}

TEST(ConfinementTest, TakesAllElse)
{
    const TemporaryDrive drive;
    const auto document = drive.file("document", "content").path();
    const auto refused = [](const std::function<bool()>& deed) {
        return deed() && whenConfined({}, [&] { return !deed(); }); // it is possible elsewhere
    };
    EXPECT_TRUE(refused([&] { return opens(document, O_WRONLY); }));
    EXPECT_TRUE(refused([&] { return opens(document, O_RDWR); }));
    EXPECT_TRUE(refused([&] { return opens(document + " new", O_RDONLY | O_CREAT); }));
    EXPECT_TRUE(refused([&] { return opens(drive.url().path(), O_WRONLY | O_TMPFILE); }));
    EXPECT_TRUE(refused([&] { return ::rename(document.c_str(), document.c_str()) == 0; }));
    EXPECT_TRUE(refused([&] { return ::chmod(document.c_str(), 0600) == 0; }));
    EXPECT_TRUE(refused([] { return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM, 0)).isOpen(); }));
    EXPECT_TRUE(refused([] { return FileDescriptor(::socket(AF_INET, SOCK_DGRAM, 0)).isOpen(); }));
    EXPECT_TRUE(refused([] { return ::kill(::getppid(), 0) == 0; }));
    if (knowsFolders()) {
        EXPECT_TRUE(refused([&] { return opens(document, O_RDONLY); })) << "reads the user's documents";
    }
    if (!kIsSanitized) {
        EXPECT_TRUE(refused(startsProgram));
        constexpr std::size_t kTwoGigabytes = 2ULL << 30U;
        EXPECT_TRUE(refused([] {
            return ::mmap(nullptr, kTwoGigabytes, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
        }));
    }
}

} // namespace
} // namespace tessel::qt
