#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <thread>

namespace tessel {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

/// The program, killed and started again over the same home.
class SessionTest : public testing::Test {
protected:
    SessionTest()
    {
        folder.tree("drive/A/B/C/Deep.bin drive/A/B/Plan.txt drive/A/Notes.txt drive/Other/Sketch.txt drive/Top.txt");
        start();
    }
    void start()
    {
        program = std::make_unique<Program>(Lines{"--console", "--log", "off", "--home", folder.url("home").path(),
                                                  "--drive", folder.url("drive").path()});
        ASSERT_EQ(program->send("settle").answer, "ok");
    }
    void killAndStart()
    {
        program->signal(SIGKILL);
        program.reset();
        start();
    }
    void does(const std::string& command) { ASSERT_EQ(program->send(command).answer, "ok") << command; }

    const TemporaryDrive folder;
    std::unique_ptr<Program> program;
};

TEST_F(SessionTest, ComesBackToFolderSearchAndSelection)
{
    does("tap A");
    does("tap B");
    killAndStart();
    EXPECT_THAT(program->screen(), AllOf(Contains("title: B"), Contains("back: A")));

    does("search deep");
    killAndStart();
    does("settle");
    EXPECT_THAT(program->screen(), AllOf(Contains("search: deep"), Contains(StartsWith("row: file | Deep.bin"))));
    does("search \"\"");

    does("tap Select");
    does("tap Plan.txt");
    killAndStart();
    EXPECT_THAT(program->screen(), AllOf(Contains("title: 1 Item Selected"), Contains("selected: Plan.txt")));
    does("tap Cancel");
    killAndStart();
    EXPECT_THAT(program->screen(), AllOf(Contains("title: B"), Contains("right: Select")));
}

TEST_F(SessionTest, ComesBackToAPreviewAndFromOneThatWasLeft)
{
    does("tap A");
    does("action Notes.txt Info");
    killAndStart();
    EXPECT_THAT(program->screen(), AllOf(Contains("back: A"), Contains(StartsWith("info: "))));
    does("back");
    does("back");
    killAndStart();
    EXPECT_THAT(program->screen(), Contains("title: Tessel Drive"));
}

TEST_F(SessionTest, ContinuesWhatIsLookedAtInAnotherInstance)
{
    const auto continued = [&] {
        const auto log = folder.url("log");
        fs::remove(log.path());
        const auto other =
            Program::run({"--console", "--log", log.path(), "--log-private", "--home", folder.url("home").path(),
                          "--drive", folder.url("drive").path(), "--continue"},
                         "settle\n");
        std::ifstream lines(log.path());
        return other.error + std::string(std::istreambuf_iterator<char>(lines), {});
    };
    EXPECT_THAT(continued(), HasSubstr("Nothing is looked at elsewhere"));
    const fs::path activities = folder.url("home/activities").path();
    const auto ofTheDead = activities / "1";
    fs::create_directory(activities);
    std::ofstream(ofTheDead) << "left";
    fs::last_write_time(ofTheDead, fs::file_time_type::clock::now() - std::chrono::minutes(2));
    does("action Top.txt Info");
    auto found = continued();
    for (int time = 0; time < 50 && found.find("elsewhere") != std::string::npos; ++time) // kept on another thread
        found = continued();
    EXPECT_FALSE(fs::exists(ofTheDead));
    EXPECT_THAT(found, AllOf(HasSubstr("Relaya document URL: file://" + folder.url("drive/Top.txt").path()),
                             Not(HasSubstr("elsewhere"))));

    std::fstream(fs::directory_iterator(activities)->path(), std::ios::in | std::ios::out) << "no archive";
    EXPECT_THAT(continued(),
                AllOf(HasSubstr("activity type is orvane.quillbox.viewing: Error"), HasSubstr("elsewhere")));
}

TEST_F(SessionTest, ComesBackToTheNearestFolderThatIsLeft)
{
    does("tap A");
    does("tap B");
    does("tap C");
    program->signal(SIGKILL);
    program.reset();
    std::filesystem::remove_all(folder.url("drive/A/B").path());
    start();
    EXPECT_THAT(program->screen(), AllOf(Contains("title: A"), Contains("back: Tessel Drive")));
}

TEST_F(SessionTest, ComesBackAfterAKillAtAnyMoment)
{
    const auto* wanted = std::getenv("TESSELDRIVE_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 8;
    std::mt19937 random(3);
    const auto titleNow = [this] { return program->send("screen").lines.front(); };
    for (int round = 0; round < rounds; ++round) {
        for (unsigned step = 0; step < random() % 4; ++step) {
            const Lines words = {"tap A", "tap B", "tap C", "tap Other", "back"};
            static_cast<void>(program->send(words[random() % words.size()]));
        }
        const auto before = titleNow();
        const auto word = before == "title: Tessel Drive" ? "tap A\n" : "back\n";
        const auto after = before == "title: Tessel Drive" || before == "title: B" ? "title: A"
                           : before == "title: C"                                  ? "title: B"
                                                                                   : "title: Tessel Drive";
        program->write(word);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        killAndStart();
        EXPECT_THAT(titleNow(), AnyOf(before, after)) << "round " << round;
    }
}

} // namespace
} // namespace tessel
