#include "platform/documents/MediaPlayer.h"

#include "platform/linux/playing/PlayerProcesses.h"
#include "tests/platform/decoding/DecoderFixture.h"
#include "tests/support/Media.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <unistd.h>

namespace tessel {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using namespace std::chrono_literals;

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class MediaPlayerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (std::string_view(TESSELDRIVE_PLAYER).empty())
            GTEST_SKIP() << "built without Qt Multimedia, so without the program that plays documents";
    }

    void open(const URL& url)
    {
        player = players().open(url);
        ASSERT_TRUE(player);
        player->showPicture = [this](const ContentPicture& picture) { pictures.push_back(picture); };
    }
    PlayerProcesses& players()
    {
        const auto& services = platform::installed();
        if (!players_)
            players_ = std::make_unique<PlayerProcesses>(PlayerProcesses::Services{services.mainQueue, services.log},
                                                         PlayerProcesses::Options{program, limit});
        return *players_;
    }
    [[nodiscard]] const MediaState& state() const { return player->state(); }
    bool isOpened()
    {
        return platform.runUntil([&] { return state().isOpen || state().problem; }) && !state().problem;
    }
    bool hasEnded()
    {
        return platform.runUntil([&] { return state().hasEnded || state().problem; }) && !state().problem;
    }
    std::optional<ContentProblem> problemOf(const URL& url)
    {
        open(url);
        EXPECT_TRUE(platform.runUntil([&] { return state().problem.has_value(); })) << url.path();
        return state().problem;
    }
    /// A program that takes the player's place.
    std::string script(const std::string& commands)
    {
        const auto file = platform.drive.file("program", "#!/bin/sh\n" + commands + "\n");
        std::filesystem::permissions(file.path(), std::filesystem::perms::owner_all);
        return file.path();
    }

    InstalledPlatform platform;
    std::string program = TESSELDRIVE_PLAYER;
    std::chrono::milliseconds limit = 10s;
    std::vector<ContentPicture> pictures;
    std::shared_ptr<MediaPlayer> player;

private:
    std::unique_ptr<PlayerProcesses> players_;
};

TEST_F(MediaPlayerTest, SoundIsPlayedToItsEndAndAgain)
{
    open(platform.drive.file("Tone.wav", media::tone(0.4)));
    ASSERT_TRUE(isOpened());
    EXPECT_NEAR(state().seconds, 0.4, 0.01);
    EXPECT_FALSE(state().hasVideo);
    for (int time = 0; time < 3; ++time) {
        player->play();
        EXPECT_TRUE(state().isPlaying) << "at once";
        EXPECT_EQ(state().position, 0);
        ASSERT_TRUE(hasEnded()) << time;
        EXPECT_FALSE(state().isPlaying);
        EXPECT_EQ(state().position, state().seconds);
    }
}

TEST_F(MediaPlayerTest, AFilmShowsItsPicturesAgainAndAgain)
{
    open(platform.drive.file("Film.avi", media::film(6, 101, 37)));
    ASSERT_TRUE(isOpened());
    EXPECT_TRUE(state().hasVideo);
    ASSERT_TRUE(platform.runUntil([&] { return !pictures.empty(); })) << "the first comes before anything is played";
    EXPECT_FALSE(state().isPlaying);
    for (int time = 0; time < 8; ++time) {
        pictures.clear();
        player->play();
        ASSERT_TRUE(hasEnded()) << time;
        EXPECT_GE(pictures.size(), 4U) << time;
    }
    const auto& last = pictures.back();
    ASSERT_EQ(last.width, 101);
    ASSERT_EQ(last.height, 37);
    for (const int row : {0, 17, 36}) {
        const auto* const bytes = last.pixels.get() + row * last.stride;
        for (int x = 0; x < last.width; ++x) {
            const int red = x * 255 / last.width;
            EXPECT_NEAR(static_cast<int>(bytes[4 * x + 2]), red, 3) << "row " << row << ", column " << x;
            EXPECT_NEAR(static_cast<int>(bytes[4 * x + 1]), 0x40, 3);
        }
    }
}

TEST_F(MediaPlayerTest, ItsProgramIsConfined)
{
    open(platform.drive.file("Tone.wav", media::tone(5)));
    ASSERT_TRUE(isOpened());
    int programs = 0;
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        const auto status = contentOf(process.path() / "status");
        if (status.find("\nPPid:\t" + std::to_string(::getpid()) + "\n") == std::string::npos)
            continue;
        ++programs;
        EXPECT_THAT(status, HasSubstr("\nNoNewPrivs:\t1\n"));
        EXPECT_THAT(status, HasSubstr("\nSeccomp:\t2\n"));
    }
    EXPECT_EQ(programs, 1);
}

TEST_F(MediaPlayerTest, PausesAndGoesWhereItIsAskedTo)
{
    open(platform.drive.file("Film.avi", media::film(40, 64, 48)));
    player->seek(1.5); // before it is open
    ASSERT_TRUE(isOpened());
    EXPECT_NEAR(state().position, 1.5, 0.11);
    player->play();
    player->play();
    ASSERT_TRUE(platform.runUntil([&] { return state().position > 1.8; }));
    EXPECT_LT(state().position, 2.5);
    player->pause();
    EXPECT_FALSE(state().isPlaying);
    const auto shown = pictures.size();
    player->seek(3);
    ASSERT_TRUE(platform.runUntil([&] { return pictures.size() > shown && !pictures.empty(); }));
    EXPECT_TRUE(platform.runUntil([&] { return static_cast<int>(pictures.back().pixels.get()[0]) >= 28; }))
        << "what is shown is what is there";
    EXPECT_FALSE(state().isPlaying);
    player->seek(3.8);
    player->play();
    EXPECT_TRUE(hasEnded());
}

TEST_F(MediaPlayerTest, PicturesAreNoLargerThanTheyAreWanted)
{
    open(platform.drive.file("Film.avi", media::film(4, 400, 200)));
    player->setLargestPicture(100, 100);
    ASSERT_TRUE(platform.runUntil([&] { return !pictures.empty(); }));
    EXPECT_EQ(pictures.back().width, 100);
    EXPECT_EQ(pictures.back().height, 50);
}

TEST_F(MediaPlayerTest, WhatCannotBePlayedSaysWhy)
{
    EXPECT_EQ(problemOf(platform.drive.file("Empty.wav", "")), ContentProblem::Empty);
    EXPECT_EQ(problemOf(platform.drive.file("Lie.avi", "This is no film.")), ContentProblem::Damaged);
    EXPECT_EQ(problemOf(platform.drive.file("Head.wav", media::tone(1).substr(0, 20))), ContentProblem::Damaged);
    EXPECT_EQ(problemOf(platform.drive.url("Gone.wav")), ContentProblem::Gone);
}

TEST_F(MediaPlayerTest, AProgramThatDiesOrIsSilentCostsTheDocumentOnly)
{
    open(platform.drive.file("Film.avi", media::film(40, 64, 48)));
    ASSERT_TRUE(isOpened());
    player->play();
    ASSERT_TRUE(platform.runUntil([&] { return state().position > 0; }));
    ASSERT_THAT(children(), SizeIs(1));
    ::kill(children().front(), SIGKILL);
    ASSERT_TRUE(platform.runUntil([&] { return state().problem.has_value(); }));
    EXPECT_EQ(state().problem, ContentProblem::NotPlayable);
    EXPECT_FALSE(state().isPlaying);
    open(platform.drive.url("Film.avi"));
    EXPECT_TRUE(isOpened()) << "tried again";
    player.reset();
    EXPECT_TRUE(platform.runUntil([&] {
        platform::installed().mainQueue.async([] {}); // looks again
        return children().empty();
    })) << "ends with the player";
}

TEST_F(MediaPlayerTest, AProgramThatNeverAnswersIsEnded)
{
    limit = 200ms;
    program = script("exec sleep 100");
    EXPECT_EQ(problemOf(platform.drive.file("Tone.wav", media::tone(1))), ContentProblem::NotPlayable);
    EXPECT_THAT(children(), IsEmpty());
    EXPECT_EQ(problemOf(platform.drive.file("Tone.wav", media::tone(1))), ContentProblem::NotPlayable);
}

// Letting go of a player never waits for its program, whatever that does.
TEST_F(MediaPlayerTest, LettingGoWaitsForNobody)
{
    program = script("trap '' TERM INT HUP; while :; do :; done");
    open(platform.drive.file("Tone.wav", media::tone(1)));
    EXPECT_TRUE(platform.runUntil([&] {
        platform::installed().mainQueue.async([] {});
        return !children().empty();
    }));
    const auto before = std::chrono::steady_clock::now();
    player.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 50ms);
}

// Damage anywhere in a document, much of it in its heads: each is opened and played for a moment.
TEST_F(MediaPlayerTest, DamagedDocumentsNeverHurt)
{
    std::mt19937 random(7);
    const std::vector<std::string> sound = {media::tone(0.2), media::film(3, 33, 17)};
    std::map<std::string, int> outcomes;
    for (int number = 0; number < 120; ++number) {
        auto content = sound[static_cast<std::size_t>(number) % 2];
        const std::size_t reach = number % 3 == 0 ? content.size() : 240;
        for (int change = 0; change < 1 + number % 7; ++change)
            content[random() % std::min(reach, content.size())] = static_cast<char>(random());
        if (number % 5 == 0)
            content.resize(random() % content.size() + 1);
        open(platform.drive.file("Damaged.bin", content));
        player->play();
        ASSERT_TRUE(platform.runUntil([&] { return state().isOpen || state().problem; })) << number;
        if (!state().problem)
            (void)platform.runUntil(
                [&] { return state().position > 0 || state().hasEnded || state().problem || state().isOpen; });
        ++outcomes[!state().problem ? "played" : *state().problem == ContentProblem::Damaged ? "damaged" : "lost"];
    }
    RecordProperty("played", outcomes["played"]);
    RecordProperty("damaged", outcomes["damaged"]);
    RecordProperty("lost", outcomes["lost"]);
    EXPECT_GT(outcomes["played"], 10);
    EXPECT_GT(outcomes["damaged"], 10);
}

} // namespace
} // namespace tessel
