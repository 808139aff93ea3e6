#include "files/FileUtils.h"
#include "files/UIUtils.h"
#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "tests/support/DriveContent.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr int kErrors[] = {EIO, ENOSPC, EDQUOT, EACCES, EXDEV, EINTR};

struct Operation {
    const char* name;
    const char* item;
    std::optional<Error> (*run)(const URL& drive);
    bool isForSomethingElse = false; ///< which may still fail when the change is made
};

std::optional<Error> move(const URL& drive, const char* from, const char* to)
{
    return FileUtils::move(drive.appending(from), drive.appending(to));
}

// What the user can have done to items, each with its coordination.
const Operation kOperations[] = {
    {"MakeFolder", "In", [](const URL& drive) { return FileUtils::mkdir(drive.appending("New/In")); }},
    {"RemoveFile", "Plan.txt", [](const URL& drive) { return FileUtils::remove(drive.appending("Plan.txt")); }},
    {"RemoveFolder", "Projects", [](const URL& drive) { return FileUtils::remove(drive.appending("Projects")); }},
    {"RemoveInCloud", "Far.txt", [](const URL& drive) { return FileUtils::remove(drive.appending("Far.txt")); }},
    {"Rename", "Plan.txt",
     [](const URL& drive) { return UIUtils::renameItemAtURL(drive.appending("Plan.txt"), "Budget"); }},
    {"RenameCase", "Plan.txt",
     [](const URL& drive) { return UIUtils::renameItemAtURL(drive.appending("Plan.txt"), "PLAN.TXT"); }},
    {"RenameInCloud", "Far.txt",
     [](const URL& drive) { return UIUtils::renameItemAtURL(drive.appending("Far.txt"), "Near"); }},
    {"MoveToLibrary", "Projects",
     [](const URL& drive) { return move(drive, "Projects", "../orvane~Lookbook/Documents/Projects"); }},
    {"MoveToLibraryInCloud", "Far.txt",
     [](const URL& drive) { return move(drive, "Far.txt", "../orvane~Lookbook/Documents/Far.txt"); }},
    {"Evict", "Plan.txt",
     [](const URL& drive) { return platform::installed().cloud.evictDocument(drive.appending("Plan.txt")); }},
    {"Download", "Far.txt",
     [](const URL& drive) {
         return FileCoordinator().coordinateReading(drive.appending("Far.txt"), ReadingOptions::None, [](auto&) {});
     },
     true},
};

class FailingOperationsTest : public testing::TestWithParam<Operation> {
protected:
    using Content = std::map<std::string, std::string>;

    void SetUp() override
    {
        if (!canMakeCallsFail())
            GTEST_SKIP() << "no system call filters here";
    }

    void begin() const
    {
        for (const auto* container : {"orvane~Quillbox", "orvane~Lookbook/Documents"})
            for (const auto& entry : fs::directory_iterator(platform.drive.url(container).path()))
                fs::remove_all(entry.path());
        for (const auto* name : {"Plan.txt", "Projects/Notes.txt"})
            platform.drive.file(std::string("orvane~Quillbox/") + name, "content");
        makeInCloud(drive.appending("Far.txt"));
        makeInCloud(drive.appending("Projects/Away.txt"));
        for (const auto& url : {drive.appending("Plan.txt"), placeholderURL(drive.appending("Far.txt"))})
            ASSERT_EQ(setExtendedAttribute(url, kTagAttribute, "Work"), std::nullopt);
    }

    // Not by evicting it, which waits for the disk.
    void makeInCloud(const URL& url) const
    {
        fs::create_directories(store.path());
        std::ofstream(store.appending("stored").path()) << "content";
        const std::string name(url.lastPathComponent());
        std::ofstream(placeholderURL(url).path())
            << placeholderContent({name, 7, {}, Date{7}, "public.plain-text", "stored", std::nullopt});
    }

    [[nodiscard]] Content content() const { return contentOf(platform.drive.url()); }

    const InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const URL drive = platform.drive.url("orvane~Quillbox");
    const URL home = platform.drive.url().deletingLastPathComponent();
    const URL store = home.appending("cloud");
    const UnfinishedWork unfinished{home.appending("unfinished")};
};

// Whichever call fails, and however: the change is made or not made, its error names the item, and nothing is left.
TEST_P(FailingOperationsTest, AreMadeOrNotMade)
{
    begin();
    const auto before = content();
    ASSERT_EQ(GetParam().run(drive), std::nullopt);
    const auto after = content();
    ASSERT_NE(after, before);
    int failures = 0;
    for (const int errorNumber : kErrors) {
        bool wasReached = true;
        for (int n = 1; wasReached && !HasFailure(); ++n) {
            begin();
            std::optional<Error> error;
            wasReached = runWithFailingCall(n, errorNumber, [&] { error = GetParam().run(drive); });
            unfinished.clearUp();
            const auto where = "call " + std::to_string(n) + ", " + std::strerror(errorNumber);
            const auto found = content();
            const bool isUnmade = error && !(GetParam().isForSomethingElse && found == after);
            EXPECT_EQ(found, isUnmade ? before : after) << where << (error ? ": " + error->description : "");
            // A document whose date cannot be read counts as one that has changed.
            const bool isKept = error && error->code == ErrorCode::kUserCancelled;
            EXPECT_THAT(error && !isKept ? error->description : GetParam().item, HasSubstr(GetParam().item)) << where;
            failures += error.has_value();
        }
    }
    EXPECT_GT(failures, 0);
}

INSTANTIATE_TEST_SUITE_P(All, FailingOperationsTest, testing::ValuesIn(kOperations),
                         [](const auto& operation) { return std::string(operation.param.name); });

} // namespace
} // namespace tessel
