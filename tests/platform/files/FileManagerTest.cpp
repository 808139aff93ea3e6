#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FileManagerTest : public testing::Test {
protected:
    std::vector<std::string> namesBelow(const URL& folder)
    {
        std::vector<std::string> names;
        files.enumerateDeep(
            folder,
            [&](const URL& url, const FileAttributes&) {
                names.push_back(url.path().substr(folder.path().size() + 1));
                if (onVisit)
                    onVisit(url);
            },
            [&](const URL& url, const Error& error) {
                failures.emplace_back(std::string(url.lastPathComponent()), error.code);
                return onError;
            });
        return names;
    }

    TemporaryDrive drive;
    UnfinishedWork unfinished{drive.url("unfinished")};
    PosixFileManager files{unfinished};
    std::function<void(const URL&)> onVisit;
    OnEnumerationError onError = OnEnumerationError::Continue;
    std::vector<std::pair<std::string, int>> failures;
};

TEST_F(FileManagerTest, SaysWhyAnItemCannotBeDescribed)
{
    const auto gone = files.attributes(drive.url("Gone.txt").path());
    EXPECT_EQ(gone.error(), (Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}}));
    EXPECT_EQ(gone.error().failureReason, "No such file or directory");
    EXPECT_EQ(gone.error().description, "The operation on “Gone.txt” failed: No such file or directory.");
    const auto belowFile = files.attributes(drive.file("File").appending("x").path());
    EXPECT_EQ(belowFile.error().code, ErrorCode::kNoSuchFile);
    const auto tooLong = files.attributes(drive.url(std::string(300, 'x')).path());
    EXPECT_EQ(tooLong.error(), (Error{Domain::General, ErrorCode::kInvalidFileName, {}, {}}));
}

TEST_F(FileManagerTest, ResolvesLinksAsFarAsTheyLead)
{
    drive.tree("Projects/Plan.txt a->Projects b->./a/../a/ Projects/up->../.. circle->egg egg->circle/x");
    drive.link("absolute", drive.url("a/Plan.txt").path());
    const auto longTarget = std::string(250, 'l') + "/" + std::string(250, 'm');
    drive.link("long", longTarget);
    const std::pair<const char*, URL> cases[] = {
        {"Projects/Plan.txt", drive.url("Projects/Plan.txt")},
        {"b/Plan.txt", drive.url("Projects/Plan.txt")},
        {"absolute", drive.url("Projects/Plan.txt")},
        {"b/Gone/../Not.txt", drive.url("Projects/Not.txt")},
        {"b/up/Not.txt", drive.url().deletingLastPathComponent().appending("Not.txt")},
        {"b/Plan.txt/below", drive.url("Projects/Plan.txt/below")},
        {"long", drive.url(longTarget)},
        {"circle/Plan.txt", drive.url("circle/Plan.txt")},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(files.resolvingSymbolicLinks(drive.url(path)), expected) << path;
    EXPECT_EQ(files.resolvingSymbolicLinks(URL::file("/../..")), URL::file("/"));
    EXPECT_EQ(*files.destinationOfSymbolicLink(drive.url("long")), longTarget);
    EXPECT_EQ(files.destinationOfSymbolicLink(drive.url("Gone")).error().code, ErrorCode::kNoSuchFile);
}

TEST_F(FileManagerTest, ReadsOnlyAliasesThatNameAFile)
{
    const auto target = drive.file("A b.txt").path();
    const auto place = drive.url().path();
    const std::pair<std::string, int> cases[] = {
        {"[Desktop Entry]\r\n# x\nType = Link\r\nURL = file://" + place + "/A%20b.txt \r\n[Other]\nURL=file:///", 0},
        {"[Desktop Entry]\nType=Link\nURL=file://localhost" + target, 0},
        {"[Desktop Entry]\nType=Link\nURL=file://" + place + "/Gone", ErrorCode::kNoSuchFile},
        {"[Desktop Entry]\nType=Application\nURL=file://" + target, ErrorCode::kReadCorrupt},
        {"[Other]\nType=Link\nURL=file://" + target, ErrorCode::kReadCorrupt},
        {"[Desktop Entry]\nType=Link\nURL=https://example.org/", ErrorCode::kReadCorrupt},
        {"[Desktop Entry]\nType=Link\nURL=file://" + place + "/A%00b", ErrorCode::kReadCorrupt},
        {"[Desktop Entry]\nType=Link\nURL=file://" + place + "/A%2", ErrorCode::kReadCorrupt},
        {"[Desktop Entry]\nType=Link\nURL=file://" + place + "/A%+5", ErrorCode::kReadCorrupt},
        {std::string(65 * 1024, '\n') + "[Desktop Entry]\nType=Link\nURL=file://" + target, EFBIG},
    };
    for (const auto& [content, code] : cases) {
        const auto resolved = files.resolvingAliasFile(drive.file("x.desktop", content));
        EXPECT_EQ(resolved ? 0 : resolved.error().code, code) << content;
        EXPECT_EQ(resolved ? resolved->path() : target, target);
    }
    EXPECT_FALSE(files.resolvingAliasFile(drive.file("x.txt", cases[0].first)));
}

TEST_F(FileManagerTest, VisitsEverythingBelowButFollowsNoLink)
{
    drive.tree("a/b/c.txt .hidden/x here->. broken->Gone");
    const auto names = namesBelow(drive.url());
    EXPECT_THAT(names, UnorderedElementsAre("a", "a/b", "a/b/c.txt", ".hidden", ".hidden/x", "here", "broken"));
    EXPECT_LT(std::ranges::find(names, "a/b"), std::ranges::find(names, "a/b/c.txt"));
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(FileManagerTest, GoesOnWhereAFolderVanishesOrCannotBeRead)
{
    drive.tree("gone/x file/x stays/x");
    onVisit = [this](const URL& url) {
        if (url == drive.url("gone") || url == drive.url("file"))
            std::filesystem::remove_all(url.path());
        if (url == drive.url("file"))
            drive.file("file");
    };
    EXPECT_THAT(namesBelow(drive.url()), UnorderedElementsAre("gone", "file", "stays", "stays/x"));
    EXPECT_THAT(failures, ElementsAre(std::pair("file", ErrorCode::kNoSuchFile)));
    failures.clear();
    EXPECT_THAT(namesBelow(drive.url("Gone")), IsEmpty());
    EXPECT_THAT(failures, ElementsAre(std::pair("Gone", ErrorCode::kNoSuchFile)));
}

TEST_F(FileManagerTest, StopsWhenItIsToldTo)
{
    drive.tree("a/x b/x");
    onVisit = [](const URL& url) {
        std::filesystem::remove_all(url.path());
        std::filesystem::create_symlink("elsewhere", url.path());
    };
    onError = OnEnumerationError::Stop;
    EXPECT_THAT(namesBelow(drive.url()), UnorderedElementsAre("a", "b"));
    EXPECT_EQ(failures.size(), 1U);
}

// Deeper than a path may be long, with few descriptors left.
TEST_F(FileManagerTest, ReadsATreeOfAnyDepth)
{
    constexpr int kDepth = 200;
    const std::string name(60, 'd');
    int folder = ::open(drive.url().path().c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; depth < kDepth; ++depth) {
        ASSERT_EQ(::mkdirat(folder, name.c_str(), 0700), 0);
        const int next = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = next;
    }
    ::close(folder);
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few = {static_cast<rlim_t>(::dup(0)) + 4, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto count = namesBelow(drive.url()).size();
    ::setrlimit(RLIMIT_NOFILE, &before);
    ::close(static_cast<int>(few.rlim_cur) - 4);
    EXPECT_EQ(count, kDepth);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(FileManagerTest, WritesAFileWholeOrLeavesItAlone)
{
    const auto url = drive.file("state.json", "old");
    EXPECT_EQ(writeFileAtomically(url, "new"), std::nullopt);
    EXPECT_EQ(drive.read("state.json"), "new");
    struct stat status = {};
    ASSERT_EQ(::stat(url.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    drive.tree("taken/x");
    EXPECT_EQ(writeFileAtomically(drive.url("taken"), "new").value_or(Error()).code, EISDIR);
    EXPECT_EQ(writeFileAtomically(drive.url("Gone/x"), "new").value_or(Error()).code, ErrorCode::kNoSuchFile);
    EXPECT_THAT(namesBelow(drive.url()), UnorderedElementsAre("state.json", "taken", "taken/x"));
}

TEST_F(FileManagerTest, ReadsSmallFilesOnly)
{
    const auto url = drive.file("small", "four");
    EXPECT_EQ(*readSmallFile(url, 4), "four");
    EXPECT_EQ(readSmallFile(url, 3).error().code, EFBIG);
    ASSERT_EQ(::mkfifo(drive.url("pipe").path().c_str(), 0600), 0);
    EXPECT_EQ(readSmallFile(drive.url("pipe"), 4).error().code, EINVAL);
}

} // namespace
} // namespace tessel
