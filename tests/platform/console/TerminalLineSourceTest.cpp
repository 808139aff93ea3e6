#include "platform/linux/run/TerminalLineSource.h"

#include "platform/run/MainQueue.h"
#include "tests/support/ManualClock.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <thread>
#include <unistd.h>

namespace tessel {
namespace {

using namespace std::chrono_literals;

std::array<int, 2> makePipe()
{
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    return ends;
}

class TerminalLineSourceTest : public testing::Test {
protected:
    ~TerminalLineSourceTest() override
    {
        ::close(ends[0]);
        endInput();
    }

    void write(const std::string& bytes) const
    {
        ASSERT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void endInput()
    {
        if (ends[1] >= 0)
            ::close(std::exchange(ends[1], -1));
    }
    std::string line() { return source.next(std::nullopt).line; }
    Input::Kind kind() { return source.next(std::nullopt).kind; }

    std::array<int, 2> ends = makePipe();
    ManualClock clock;
    MainQueue queue{clock};
    TerminalLineSource source{queue, ends[0]};
};

TEST_F(TerminalLineSourceTest, TakesLinesOfAnyBytesAndALastOneWithoutItsEnd)
{
    const std::string odd("a\0\xff\r", 4);
    write("one\n\n" + odd + "\nla");
    EXPECT_EQ(line(), "one");
    EXPECT_EQ(line(), "");
    EXPECT_EQ(line(), odd);
    EXPECT_EQ(source.next(0s).kind, Input::Kind::Woken) << "the line is not there yet";
    write("st");
    endInput();
    EXPECT_EQ(line(), "last");
    EXPECT_EQ(kind(), Input::Kind::End);
    EXPECT_EQ(kind(), Input::Kind::End);
}

TEST_F(TerminalLineSourceTest, SkipsALineThatIsTooLongAndTakesOneThatJustFits)
{
    const std::string longest(1 << 20, 'x');
    std::thread writer([&] {
        write(longest + "\n" + longest + "y\n" + longest + longest + longest + "\nafter\n" + longest + "y");
        endInput();
    });
    EXPECT_TRUE(line() == longest);
    EXPECT_EQ(kind(), Input::Kind::TooLong);
    EXPECT_EQ(kind(), Input::Kind::TooLong);
    EXPECT_EQ(line(), "after");
    EXPECT_EQ(kind(), Input::Kind::TooLong);
    EXPECT_EQ(kind(), Input::Kind::End);
    writer.join();
}

TEST_F(TerminalLineSourceTest, IsWokenByATaskThatAnotherThreadAddsAndByOneThatCameBefore)
{
    std::thread other([&] { queue.async([] {}); });
    EXPECT_EQ(kind(), Input::Kind::Woken);
    other.join();
    queue.async([] {});
    source.waitForWake(1h);
    EXPECT_EQ(source.next(0s).kind, Input::Kind::Woken);
}

TEST_F(TerminalLineSourceTest, LeavesLinesAloneWhileItWaitsForAWakeUp)
{
    write("one\n");
    queue.async([] {});
    source.waitForWake(1h);
    EXPECT_EQ(line(), "one");
}

// The console saves its state at the end of the input; whoever asks twice does not want to wait for that. The signal
// goes to another thread, as the kernel may choose to do.
TEST_F(TerminalLineSourceTest, EndsAtTheFirstSignalAndTheProcessAtTheSecond)
{
    write("one\ntwo\n");
    EXPECT_EQ(line(), "one");
    std::thread([] { ::pthread_kill(::pthread_self(), SIGTERM); }).join();
    EXPECT_EQ(kind(), Input::Kind::End);
    EXPECT_EXIT(::raise(SIGINT), testing::KilledBySignal(SIGINT), "");
}

TEST_F(TerminalLineSourceTest, IsWokenByASignal)
{
    std::thread other([] { ::raise(SIGHUP); });
    while (kind() == Input::Kind::Woken)
        continue;
    other.join();
}

} // namespace
} // namespace tessel
