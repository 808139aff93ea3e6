#include "platform/linux/log/DefaultLogSink.h"
#include "platform/linux/log/JournalSink.h"
#include "platform/linux/log/RotatedFileSink.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>
#include <sstream>

namespace tessel {
namespace {

using ::testing::EndsWith;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

constexpr Date kDate = {1'795'348'800'250'000'000};
constexpr std::size_t kHalfFile = RotatedFileSink::kRotationSize / 2;

mode_t permissions(const std::string& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 0777U;
}

class RotatedFileSinkTest : public ::testing::Test {
protected:
    void write(std::string_view line) { sink.write(kDate, LogLevel::Info, line); }

    TemporaryDrive drive;
    RotatedFileSink sink{drive.url("state/tesseldrive/tesseldrive.log").path()};
};

TEST_F(RotatedFileSinkTest, MakesAFileForTheUserAloneAtTheFirstLine)
{
    EXPECT_FALSE(std::filesystem::exists(drive.url("state").path()));

    write("(TSD)[INFO] main (1) Running");

    EXPECT_EQ(drive.read("state/tesseldrive/tesseldrive.log"),
              "2026-11-22T12:00:00.250Z (TSD)[INFO] main (1) Running\n");
    EXPECT_EQ(permissions(drive.url("state/tesseldrive/tesseldrive.log").path()), 0600U);
    EXPECT_EQ(permissions(drive.url("state/tesseldrive").path()), 0700U);
}

// Two instances write the same file. When it is full the first to notice rotates it, and the other, which still has
// the old file open, must not rotate the new one away.
TEST_F(RotatedFileSinkTest, RotatesOnceForAllItsWriters)
{
    RotatedFileSink other(drive.url("state/tesseldrive/tesseldrive.log").path());
    write("first" + std::string(kHalfFile, '1'));
    other.write(kDate, LogLevel::Info, std::string(kHalfFile - 100, '2'));

    write("third");
    other.write(kDate, LogLevel::Info, std::string(100, '4'));
    write("fifth" + std::string(kHalfFile, '5'));
    EXPECT_THAT(drive.read("state/tesseldrive/tesseldrive.log.1"), StartsWith("2026-11-22T12:00:00.250Z first1"));

    write("sixth" + std::string(kHalfFile, '6'));
    EXPECT_THAT(drive.read("state/tesseldrive/tesseldrive.log"), StartsWith("2026-11-22T12:00:00.250Z sixth6"));
    EXPECT_THAT(drive.read("state/tesseldrive/tesseldrive.log.1"), StartsWith("2026-11-22T12:00:00.250Z 444"));
}

TEST_F(RotatedFileSinkTest, StartsAnewWhereItsFolderWasRemovedAndLosesLinesWhereNoneCanBe)
{
    write("lost with the folder");
    std::filesystem::remove_all(drive.url("state").path());
    write("kept");
    EXPECT_THAT(drive.read("state/tesseldrive/tesseldrive.log"), EndsWith(" kept\n"));

    std::filesystem::remove_all(drive.url("state").path());
    drive.file("state", "a file in the folder's place");
    write("lost");
    EXPECT_EQ(drive.read("state"), "a file in the folder's place");

    RotatedFileSink full("/dev/full");
    full.write(kDate, LogLevel::Error, "lost");
}

TEST_F(RotatedFileSinkTest, KeepsLinesOfTwoProcessesWhole)
{
    constexpr int kLines = 2000;
    const auto writeAll = [this](char letter) {
        for (int line = 0; line < kLines; ++line)
            write(std::string(500, letter));
    };
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        writeAll('c');
        ::_exit(0);
    }
    writeAll('p');
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);

    std::istringstream lines(drive.read("state/tesseldrive/tesseldrive.log"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        ASSERT_TRUE(line.ends_with(std::string(500, 'c')) || line.ends_with(std::string(500, 'p'))) << line;
    EXPECT_EQ(count, 2 * kLines);
}

/// The journal's end of the socket.
class Journal {
public:
    explicit Journal(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    [[nodiscard]] std::string receive() const
    {
        pollfd readable = {socket_.get(), POLLIN, 0};
        if (::poll(&readable, 1, 10'000) != 1)
            return "nothing came";
        std::string datagram(1U << 20U, '\0');
        const auto size = ::recv(socket_.get(), datagram.data(), datagram.size(), 0);
        return datagram.substr(0, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }

private:
    FileDescriptor socket_;
};

TEST(JournalSinkTest, SendsADatagramALineAlsoAfterTheJournalWasRestarted)
{
    TemporaryDrive drive;
    const auto path = drive.url("socket").path();
    EXPECT_EQ(JournalSink::make(path), nullptr);
    auto journal = std::make_unique<Journal>(path);
    const auto sink = JournalSink::make(path);
    ASSERT_NE(sink, nullptr);

    sink->write(kDate, LogLevel::Warning, "(TSD)[WARNING] main (1) text");
    EXPECT_EQ(journal->receive(), "MESSAGE=(TSD)[WARNING] main (1) text\nPRIORITY=4\nSYSLOG_IDENTIFIER=tesseldrive\n");

    journal.reset();
    sink->write(kDate, LogLevel::Info, "lost");
    std::filesystem::remove(path);
    journal = std::make_unique<Journal>(path);
    sink->write(kDate, LogLevel::Error, std::string(1U << 20U, 'x'));
    EXPECT_THAT(journal->receive(), MatchesRegex("MESSAGE=x+\nPRIORITY=3\nSYSLOG_IDENTIFIER=tesseldrive\n"));

    for (int line = 0; line < 10'000; ++line) // nobody reads: lines are lost, and the program goes on
        sink->write(kDate, LogLevel::Debug, "line");
}

TEST(DefaultLogSinkTest, LeavesNoTraceBeforeTheFirstLine)
{
    TemporaryDrive drive;
    const auto sink = makeDefaultLogSink(drive.url("state").path());
    EXPECT_EQ(sink->minimumLevel, LogLevel::Info);
    EXPECT_FALSE(std::filesystem::exists(drive.url("state").path()));
}

} // namespace
} // namespace tessel
