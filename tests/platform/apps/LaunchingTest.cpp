#include "platform/apps/ApplicationRegistry.h"
#include "platform/base/Platform.h"
#include "platform/documents/DocumentInteractionController.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

namespace tessel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

ApplicationRecord unknownApplication(const std::string& identifier)
{
    ApplicationRecord record;
    record.bundleIdentifier = identifier;
    record.itemName = "Unknown";
    return record;
}

/// A program that writes what it was given to a pipe, and tests that read it: nobody waits for more than that.
class LaunchingTest : public testing::Test {
protected:
    LaunchingTest()
    {
        pipe = platform.desktop.url("answer").path();
        if (::mkfifo(pipe.c_str(), 0600) != 0)
            throw std::runtime_error("no pipe");
        reader = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC); // also for writing: no end of file between two programs
        desktop.script("bin/tell", "exec > '" + pipe + "'\n" + R"sh(
            for argument in "$@"; do printf 'argument=%s\n' "$argument"; done
            printf 'folder=%s\n' "$(pwd)"
            printf 'token=%s startup=%s\n' "$XDG_ACTIVATION_TOKEN" "$DESKTOP_STARTUP_ID"
            printf 'descriptors=%s\n' "$(echo /proc/$$/fd/*)"
            printf 'input=%s\n' "$(readlink /proc/$$/fd/0)"
            printf 'session=%s\n' "$(cut -d' ' -f6 /proc/$$/stat)"
            printf 'process=%s\n' $$
            printf 'signals=%s\n' "$(grep SigIgn /proc/$$/status | cut -f2)"
            printf 'end\n')sh");
    }
    ~LaunchingTest() override { ::close(reader); }

    [[nodiscard]] std::optional<Error> open(const std::string& identifier, const URL& document)
    {
        auto& apps = platform::installed().apps;
        const auto application = apps.application(identifier);
        return apps.openDocument(document, application ? *application : unknownApplication(identifier));
    }
    /// The lines up to "end", or "(nothing)" after 30 seconds.
    [[nodiscard]] std::vector<std::string> answer()
    {
        std::vector<std::string> lines(1);
        for (char character; lines.back() != "end\n" && readWithin(character);) {
            if (lines.back().ends_with('\n'))
                lines.emplace_back();
            lines.back().push_back(character);
        }
        for (auto& line : lines)
            line.resize(line.size() - (line.ends_with('\n') ? 1 : 0));
        return lines;
    }
    [[nodiscard]] bool readWithin(char& character) const
    {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(reader, &set);
        timeval patience = {30, 0};
        return ::select(reader + 1, &set, nullptr, nullptr, &patience) == 1 && ::read(reader, &character, 1) == 1;
    }

    InstalledPlatform platform;
    const DesktopOfTest desktop{platform.desktop};
    const TemporaryDrive& drive = platform.drive;
    std::string pipe;
    int reader = -1;
};

TEST_F(LaunchingTest, GivesAProgramTheRealPathAndNothingOfOurs)
{
    desktop.entry("tell", "tell %c %f --end");
    const std::string name = "Akte \"x\" $(touch y) 'z'; \xff\xe4 %f -n.txt";
    const auto document = drive.file("Sub folder/" + name);
    for (const auto* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        ASSERT_EQ(::setenv(variable, "ours", 1), 0);
    std::signal(SIGPIPE, SIG_IGN);
    const int leaked = ::open("/dev/null", O_RDONLY); // without O_CLOEXEC
    ASSERT_EQ(open("tell", document), std::nullopt);
    const auto lines = answer();
    ::close(leaked);
    for (const auto* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        ::unsetenv(variable);
    ASSERT_EQ(lines.back(), "end");
    EXPECT_THAT(lines, Contains("argument=tell"));
    EXPECT_THAT(lines, Contains("argument=" + document.path()));
    EXPECT_THAT(lines, Contains("argument=--end"));
    EXPECT_THAT(lines, Contains("folder=" + document.deletingLastPathComponent().path()));
    EXPECT_THAT(lines, Contains("token= startup="));
    EXPECT_THAT(lines, Contains("input=/dev/null"));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("/fd/" + std::to_string(leaked)))));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("signals="), EndsWith("0000000"))));
    const auto session =
        *std::find_if(lines.begin(), lines.end(), [](auto& line) { return line.starts_with("session="); });
    EXPECT_THAT(lines, Contains("process=" + session.substr(8)));
    EXPECT_NE(session, "session=" + std::to_string(::getsid(0)));
}

TEST_F(LaunchingTest, PassesAnActivationTokenAndTheEntrysFolder)
{
    platform::installed().apps.activationToken = [] { return std::string("token 1"); };
    desktop.entry("tell", "tell %u", "Path=" + platform.desktop.url().path());
    const auto document = drive.file("a b.txt");
    ASSERT_EQ(open("tell", document), std::nullopt);
    const auto lines = answer();
    EXPECT_THAT(lines, Contains("argument=" + document.absoluteString()));
    EXPECT_THAT(lines, Contains("token=token 1 startup=token 1"));
    EXPECT_THAT(lines, Contains("folder=" + platform.desktop.url().path()));
}

TEST_F(LaunchingTest, RunsAProgramForTheTerminalInOne)
{
    desktop.script("bin/vi", "exit 0");
    desktop.entry("vi", "vi %f", "Terminal=true");
    const auto document = drive.file("a.txt");
    EXPECT_EQ(open("vi", document)->code, ErrorCode::kUnsupported);
    std::filesystem::copy(platform.desktop.url("bin/tell").path(),
                          platform.desktop.url("bin/x-terminal-emulator").path());
    EXPECT_EQ(open("vi", document), std::nullopt);
    auto lines = answer();
    lines.resize(3);
    EXPECT_THAT(lines, ElementsAre("argument=-e", "argument=vi", "argument=" + document.path()));
}

TEST_F(LaunchingTest, OpensLinksInTheUsersBrowser)
{
    auto& apps = platform::installed().apps;
    const std::string link = "https://orvane.example/storage?plan=2&x=$(y)%20'";
    EXPECT_EQ(apps.openLink(link)->code, ErrorCode::kUnsupported);
    desktop.entry("paths", "tell %f", "MimeType=x-scheme-handler/https;"); // for it a link would be a file
    EXPECT_EQ(apps.openLink(link)->code, ErrorCode::kUnsupported);
    desktop.entry("claims", "tell --claims %u", "MimeType=x-scheme-handler/https;");
    desktop.entry("chosen", "tell --chosen %u", "MimeType=x-scheme-handler/http;");
    desktop.associations("[Default Applications]\nx-scheme-handler/https=chosen.desktop\n");
    EXPECT_EQ(apps.openLink(link), std::nullopt);
    auto lines = answer();
    lines.resize(2);
    EXPECT_THAT(lines, ElementsAre("argument=--chosen", "argument=" + link));

    desktop.entry("any", "tell %u", "MimeType=x-scheme-handler/file;x-scheme-handler/javascript;");
    for (const auto* refused : {"", "https", "file:///etc/passwd", "javascript://x", "httpsx://x", "https://a b",
                                "https://a\nb", "--help", " https://a"})
        EXPECT_TRUE(apps.openLink(refused)) << refused;
}

// A program that is gone, no program at all, or dies: an error or a line in the log, and no zombie is left.
TEST_F(LaunchingTest, SurvivesProgramsThatDoNotRun)
{
    while (::waitpid(-1, nullptr, 0) > 0) { // what earlier tests left running
    }
    const auto document = drive.file("a.txt");
    platform.desktop.file("bin/broken", "\x7f"
                                        "ELF no program");
    std::filesystem::permissions(platform.desktop.url("bin/broken").path(), std::filesystem::perms::owner_all);
    desktop.entry("broken", "broken %f");
    desktop.entry("gone", "gone %f");
    desktop.entry("deaf", "tell");
    EXPECT_EQ(open("broken", document), (Error{Domain::System, ENOEXEC, {}, {}}));
    for (const auto* identifier : {"gone", "unknown"})
        EXPECT_EQ(open(identifier, document)->code, ErrorCode::kNoSuchFile) << identifier;
    EXPECT_EQ(open("deaf", document), (Error{Domain::System, EINVAL, {}, {}}));

    desktop.script("bin/fails", "exit 3");
    desktop.script("bin/crashes", "kill -SEGV $$");
    desktop.entry("fails", "fails %f");
    desktop.entry("crashes", "crashes %f");
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(open("fails", document), std::nullopt);
        EXPECT_EQ(open("crashes", document), std::nullopt);
    }
    ASSERT_TRUE(platform.runUntil([this] { return platform.log->lines().size() == 40; }));
    EXPECT_THAT(platform.log->lines(), Contains("The application fails ended at once with status 3").Times(20));
    EXPECT_THAT(platform.log->lines(), Contains("The application crashes was ended at once by signal 11").Times(20));
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(LaunchingTest, LogsWhyADocumentCannotBeHandedOver)
{
    const auto document = drive.file("a.txt");
    DocumentInteractionController(document).openInPlace(unknownApplication("gone"));
    DocumentInteractionController(drive.url("missing.txt")).openInPlace(unknownApplication("gone"));
    ASSERT_TRUE(platform.runUntil([this] { return platform.log->lines().size() == 2; }));
    EXPECT_THAT(platform.log->lines(),
                Contains(HasSubstr("Cannot open " + document.absoluteString() + " in Unknown (gone)")));
}

} // namespace
} // namespace tessel
