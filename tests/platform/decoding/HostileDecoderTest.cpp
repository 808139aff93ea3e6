#include "platform/linux/decoding/ProcessDecoder.h"

#include "tests/platform/decoding/DecoderFixture.h"
#include "tests/platform/decoding/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <vector>

namespace tessel {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;
using namespace std::chrono_literals;

auto openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

class HostileDecoderTest : public DecoderFixture {
protected:
    [[nodiscard]] ProcessDecoder& decoder(const std::string& program = TESSELDRIVE_HOSTILE_DECODER)
    {
        if (!own_) {
            const auto& services = platform::installed();
            own_ = std::make_unique<ProcessDecoder>(
                ProcessDecoder::Services{services.mainQueue, services.log, services.types},
                ProcessDecoder::Options{.program = program, .timeLimit = 300ms, .idleSeconds = 30});
        }
        return *own_;
    }

    Painted painted(const std::string& name)
    {
        std::promise<Painted> answer;
        const auto url = platform.drive.file(name, "content");
        decoder().paint({.url = url, .width = 64, .height = 64, .part = {}}, [&](const auto& picture, auto problem) {
            answer.set_value({picture, problem});
        });
        return answer.get_future().get();
    }

    std::unique_ptr<ProcessDecoder> own_;
};

TEST_F(HostileDecoderTest, BelievesNothing)
{
    EXPECT_TRUE(painted("good").picture);
    for (const auto* how : {"too large for its file", "too large", "negative", "not sealed", "no file",
                            "no file in memory", "half an answer"}) {
        EXPECT_EQ(painted(how).problem, ContentProblem::Damaged) << how;
        EXPECT_TRUE(painted("good").picture) << "after: " << how;
    }
    std::optional<ContentFacts> facts;
    decoder().inspect(platform.drive.file("facts", "content"), [&](const ContentFacts& told) { facts = told; });
    ASSERT_TRUE(platform.runUntil([&] { return facts.has_value(); }));
    EXPECT_EQ(*facts, ContentFacts());
}

TEST_F(HostileDecoderTest, LosesOneDocumentWithAProcessThatDiesOrHangs)
{
    EXPECT_EQ(painted("crash").problem, ContentProblem::Damaged);
    EXPECT_TRUE(painted("good").picture);
    EXPECT_EQ(painted("crash").problem, ContentProblem::Damaged);
    EXPECT_EQ(painted("hang").problem, ContentProblem::TooSlow);
    EXPECT_TRUE(painted("good").picture);
}

// The kernel, short of memory, ended a program that did nothing: the next document is not to blame.
TEST_F(HostileDecoderTest, DoesNotBlameADocumentForAProcessThatHadEndedBefore)
{
    EXPECT_TRUE(painted("good").picture);
    ASSERT_THAT(children(), SizeIs(1));
    ::kill(children().front(), SIGKILL);
    siginfo_t ended = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(children().front()), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(painted("good").picture);
}

TEST_F(HostileDecoderTest, WorksForTheNewestWishAndForNoneThatWasTakenBack)
{
    const auto hanging = platform.drive.file("hang", "content");
    const auto good = platform.drive.file("good", "content");
    const auto never = [](const auto&, auto) { ADD_FAILURE(); };
    std::vector<DocumentDecoder::Ticket> busy;
    for (int program = 0; program < 2; ++program)
        busy.push_back(decoder().paint({.url = hanging, .width = 64, .height = 64, .part = {}}, never));
    while (children().size() < 2)
        std::this_thread::yield();
    struct Notes { // the decoder's threads may still have it when the test ends
        std::mutex mutex;
        std::vector<int> order;
        std::promise<void> all;
    };
    const auto notes = std::make_shared<Notes>();
    const auto note = [notes](int which) {
        return [notes, which](const auto&, auto) {
            const std::lock_guard lock(notes->mutex);
            notes->order.push_back(which);
            if (notes->order.size() == 2)
                notes->all.set_value();
        };
    };
    decoder().paint({.url = good, .width = 64, .height = 64, .part = {}}, note(1));
    const auto dropped = decoder().paint({.url = good, .width = 64, .height = 64, .part = {}}, never);
    decoder().paint({.url = good, .width = 64, .height = 64, .part = {}}, note(2));
    decoder().cancel(dropped);
    decoder().cancel(busy[0]); // its program has nothing else to do, and goes
    notes->all.get_future().wait();
    decoder().cancel(busy[1]);
    EXPECT_THAT(notes->order, ::testing::ElementsAre(2, 1));
}

TEST_F(HostileDecoderTest, LeavesNothingBehind)
{
    const auto before = openDescriptors();
    EXPECT_TRUE(painted("good").picture);
    EXPECT_EQ(painted("crash").problem, ContentProblem::Damaged);
    EXPECT_TRUE(painted("good").picture);
    platform.turn(30);
    platform.turn(30);
    EXPECT_THAT(children(), IsEmpty()) << "a program that nobody needs runs on";

    const auto never = [](const auto&, auto) { ADD_FAILURE(); };
    const auto hanging = platform.drive.file("hang", "content");
    for (int wish = 0; wish < 4; ++wish)
        decoder().paint({.url = hanging, .width = 64, .height = 64, .part = {}}, never);
    while (children().size() < 2)
        std::this_thread::yield();
    const auto start = std::chrono::steady_clock::now();
    own_.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 250ms) << "waited for what hangs";
    EXPECT_THAT(children(), IsEmpty());
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(HostileDecoderTest, KnowsOnlyTextsWithoutTheProgram)
{
    auto& none = decoder("/nowhere");
    std::vector<ContentKind> kinds;
    none.inspect(platform.drive.file("a.png", "content"), [&](const auto& facts) { kinds.push_back(facts.kind); });
    none.inspect(platform.drive.file("a.txt", "content"), [&](const auto& facts) { kinds.push_back(facts.kind); });
    ASSERT_TRUE(platform.runUntil([&] { return kinds.size() == 2; }));
    EXPECT_THAT(kinds, ::testing::UnorderedElementsAre(ContentKind::None, ContentKind::Text));
    EXPECT_EQ(painted("good").problem, ContentProblem::NotReadable);
}

} // namespace
} // namespace tessel
