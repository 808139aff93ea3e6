#include "platform/base/PercentEncoding.h"
#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <set>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr int kDocuments = 60;

/// Two programs over one drive, each used through its console by somebody who arranges documents and is in a hurry.
class TwoConsolesTest : public testing::Test {
protected:
    TwoConsolesTest()
    {
        for (int number = 0; number < kDocuments; ++number)
            drive.file("drive/" + folders[static_cast<std::size_t>(number) % 3] + "/d" + std::to_string(number) +
                           ".bin",
                       "content " + std::to_string(number));
        for (auto& program : programs)
            start(program);
    }
    void start(std::unique_ptr<Program>& program) const
    {
        program = std::make_unique<Program>(Lines{"--console", "--log", "off", "--home", drive.url("home").path(),
                                                  "--drive", drive.url("drive").path()});
    }
    std::size_t any(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random); }

    /// Names of rows of a kind that are on the screen.
    static Lines rows(Program& program, const std::string& kind)
    {
        Lines names;
        const auto start = "row: " + kind + " | ";
        for (const auto& line : program.send("screen").lines)
            if (line.starts_with(start))
                names.push_back(line.substr(start.size(), line.find(" | ", start.size()) - start.size()));
        return names;
    }
    /// Leaves whatever question or mode is left.
    static void leave(Program& program)
    {
        for (int times = 0; times < 4; ++times)
            for (const auto* button : {"tap OK", "tap Cancel"})
                static_cast<void>(program.send(button));
    }
    void goSomewhere(Program& program)
    {
        leave(program);
        const auto folder = drive.url("drive/" + folders[any(folders.size())]).path();
        static_cast<void>(program.send("open tesseldriveapp:" + percentEncodedPath(percentEncodedPath(folder))));
    }
    void rename(Program& program)
    {
        const auto names = rows(program, "file");
        if (names.empty() || program.send("action " + names[any(names.size())] + " Rename").answer != "ok")
            return;
        static_cast<void>(program.send("clear"));
        // Now and then a name that is taken.
        static_cast<void>(program.send("type r" + std::to_string(any(40)) + ".bin"));
        static_cast<void>(program.send("return"));
    }
    void moveSome(Program& program)
    {
        const auto names = rows(program, "file");
        if (names.empty())
            return;
        static_cast<void>(program.send("tap Select"));
        for (std::size_t times = 1 + any(4); times > 0; --times)
            static_cast<void>(program.send("tap " + names[any(names.size())]));
        if (program.send("tap Move").answer != "ok")
            return;
        static_cast<void>(program.send("back"));
        static_cast<void>(program.send("settle"));
        if (const auto targets = rows(program, "folder"); !targets.empty())
            static_cast<void>(program.send("tap " + targets[any(targets.size())]));
        static_cast<void>(program.send("tap Move"));
    }
    void killNowAndThen(std::unique_ptr<Program>& program)
    {
        if (any(8) != 0)
            return;
        program->write("tap Select\ntap Move\nback\n");
        program->signal(SIGKILL);
        start(program);
    }
    [[nodiscard]] std::multiset<std::string> contents() const
    {
        std::multiset<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(drive.url("drive").path())) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path());
            found.insert(std::string(std::istreambuf_iterator<char>(file), {}));
        }
        return found;
    }

    const Lines folders = {"A", "B", "C"};
    const TemporaryDrive drive;
    std::array<std::unique_ptr<Program>, 2> programs;
    std::mt19937 random{21};
};

TEST_F(TwoConsolesTest, LoseNothingAndDoubleNothing)
{
    const auto before = contents();
    ASSERT_EQ(before.size(), std::size_t{kDocuments});
    const auto* wanted = std::getenv("TESSELDRIVE_ROUNDS");
    for (int round = wanted ? std::atoi(wanted) : 30; round > 0; --round)
        for (auto& program : programs) {
            goSomewhere(*program);
            if (any(2) == 0)
                rename(*program);
            else
                moveSome(*program);
            killNowAndThen(program);
        }
    programs = {};
    EXPECT_EQ(contents(), before);
    int elsewhere = 0;
    for (int number = 0; number < kDocuments; ++number)
        elsewhere += fs::exists(drive
                                    .url("drive/" + folders[static_cast<std::size_t>(number) % 3] + "/d" +
                                         std::to_string(number) + ".bin")
                                    .path())
                         ? 0
                         : 1;
    EXPECT_GT(elsewhere, 10) << "they have arranged something";
}

} // namespace
} // namespace tessel
