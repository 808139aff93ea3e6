#include "platform/linux/cloud/DocumentStore.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/ProgressService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/FileManager.h"
#include "platform/files/ResourceValues.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/OtherProcess.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class DocumentStoreTest : public testing::Test {
protected:
    [[nodiscard]] static std::string read(const URL& url)
    {
        std::ifstream stream(url.path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    // As a program reads it: wherever the content is.
    [[nodiscard]] static Result<std::string> readCoordinated(const URL& url,
                                                             const FileCoordinator::Progress& progress = nullptr)
    {
        std::string content;
        const auto error = FileCoordinator().coordinateReading(
            url, ReadingOptions::None, [&](const URL& item) { content = read(item); }, progress);
        if (error)
            return *error;
        return content;
    }

    [[nodiscard]] static std::optional<Error> evict(const URL& url)
    {
        return platform::installed().cloud.evictDocument(url);
    }

    [[nodiscard]] static std::vector<std::string> names(const URL& folder)
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.path()))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    [[nodiscard]] static Value identifier(const URL& url)
    {
        const ResourceKey keys[] = {ResourceKey::DocumentIdentifier};
        const auto values = platform::installed().resources.values(keys, url, ValueVariant::Promised);
        return values ? values->at(keys[0]) : Value();
    }

    [[nodiscard]] bool isInCloud(const URL& url) const
    {
        return fs::exists(placeholderURL(url).path()) && !fs::exists(url.path());
    }

    void makeInCloud(const URL& url, const std::string& content, std::string identifier = "stored") const
    {
        fs::create_directories(store.path());
        std::ofstream(store.appending("stored").path()) << content;
        const std::string name(url.lastPathComponent());
        ASSERT_EQ(writePlaceholder(url, {name, 11, {}, Date{7}, "public.plain-text", std::move(identifier), "owner"}),
                  std::nullopt);
    }

    InstalledPlatform platform{std::initializer_list<InstalledPlatform::Library>{}};
    const URL home = platform.drive.url().deletingLastPathComponent();
    const URL store = home.appending("cloud");
    const URL drive = platform.services().cloud.defaultContainer()->documentsURL;
    const URL plan = drive.appending("Plan.txt");
};

TEST_F(DocumentStoreTest, DownloadsADocumentForWhoeverReadsItsContent)
{
    makeInCloud(plan, "the content");
    EXPECT_EQ(std::nullopt, FileCoordinator().coordinateReading(plan, ReadingOptions::ImmediatelyAvailableMetadataOnly,
                                                                [&](const URL& url) { EXPECT_TRUE(isInCloud(url)); }));
    std::vector<std::uint64_t> progress;
    const auto content = readCoordinated(plan, [&](std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(total, 11);
        EXPECT_TRUE(isInCloud(plan)) << "until it is whole";
        EXPECT_EQ(setExtendedAttribute(placeholderURL(plan), kTagAttribute, "Work"), std::nullopt) << "meanwhile";
        progress.push_back(done);
        return OnProgress::Continue;
    });
    EXPECT_EQ(*content, "the content");
    EXPECT_THAT(progress, ElementsAre(11));
    EXPECT_THAT(*readTagNames(plan), ElementsAre("Work"));
    EXPECT_EQ(platform.services().files.attributes(plan.path())->modificationDate, Date{7});
    EXPECT_THAT(names(drive), ElementsAre("Plan.txt"));
}

// Somebody else downloads what the user looks at, and the user has enough of it.
TEST_F(DocumentStoreTest, PublishesADownloadWhichAnybodyCanCancel)
{
    makeInCloud(plan, std::string(1'000'000, 'x'));
    std::shared_ptr<Progress> published;
    bool isWithdrawn = false;
    const auto subscriber = platform.services().progress.addSubscriberForFileURL(plan, [&](const auto& progress) {
        published = progress;
        return [&] { isWithdrawn = true; };
    });
    std::promise<void> cancelled;
    int steps = 0;
    std::optional<Error> error;
    std::thread reader([&, wait = cancelled.get_future().share()] {
        const auto result = readCoordinated(plan, [&](std::uint64_t, std::uint64_t) {
            steps++;
            wait.wait();
            return OnProgress::Continue;
        });
        error = result ? std::nullopt : std::optional(result.error());
    });
    const bool isSeen = platform.runUntil([&] { return published && published->completedUnitCount() > 0; });
    if (isSeen) {
        EXPECT_EQ(published->kind(), kProgressKindFile);
        EXPECT_EQ(published->totalUnitCount(), 11) << "as the placeholder says";
        published->cancel();
    }
    cancelled.set_value();
    reader.join();
    ASSERT_TRUE(isSeen);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, ErrorCode::kUserCancelled);
    EXPECT_EQ(steps, 1) << "it went on though it was cancelled";
    EXPECT_TRUE(platform.runUntil([&] { return isWithdrawn; }));
    EXPECT_TRUE(isInCloud(plan));
}

TEST_F(DocumentStoreTest, LeavesADocumentInTheCloudWhenItsContentDoesNotCome)
{
    const auto cancel = [](std::uint64_t, std::uint64_t) { return OnProgress::Cancel; };
    makeInCloud(plan, "the content");
    EXPECT_EQ(readCoordinated(plan, cancel).error().code, ErrorCode::kUserCancelled);
    makeInCloud(plan, "cut");
    EXPECT_EQ(readCoordinated(plan).error().code, ErrorCode::kReadCorrupt);
    makeInCloud(plan, "the content", "../catalog.sqlite");
    EXPECT_EQ(readCoordinated(plan).error().code, ErrorCode::kReadCorrupt);
    makeInCloud(plan, "the content", "lost");
    EXPECT_EQ(readCoordinated(plan).error().code, ErrorCode::kNoSuchFile);
    EXPECT_TRUE(isInCloud(plan));
    EXPECT_EQ(names(drive).size(), 1);
}

TEST_F(DocumentStoreTest, SendsADocumentBackWithAllThatBelongsToIt)
{
    platform.drive.file("orvane~Quillbox/Plan.txt", "the content");
    ASSERT_EQ(setExtendedAttribute(plan, kTagAttribute, "Work"), std::nullopt);
    const auto date = platform.services().files.attributes(plan.path())->modificationDate;
    const auto sameIdentifier = identifier(plan);
    ASSERT_EQ(evict(plan), std::nullopt);
    ASSERT_TRUE(isInCloud(plan));
    EXPECT_EQ(identifier(plan), sameIdentifier);
    const auto record = readPlaceholder(placeholderURL(plan));
    EXPECT_EQ(record->size, 11);
    EXPECT_EQ(record->modificationDate, date);
    EXPECT_THAT(*platform.services().cloud.tagNames(plan), ElementsAre("Work"));
    EXPECT_EQ(read(store.appending(record->identifier)), "the content");
    EXPECT_EQ(evict(plan), std::nullopt);
    const auto moved = drive.appending("Moved.txt");
    ASSERT_EQ(platform.services().files.moveItem(plan, moved), std::nullopt);
    EXPECT_EQ(identifier(moved), sameIdentifier);
    EXPECT_EQ(*readCoordinated(moved), "the content");
    EXPECT_THAT(*readTagNames(moved), ElementsAre("Work"));
    EXPECT_EQ(identifier(moved), sameIdentifier);
    EXPECT_FALSE(sameIdentifier.isNone());
}

// The store's content is somebody's last copy: another document, or another version, never takes its place.
TEST_F(DocumentStoreTest, KeepsEveryContentUnderANameOfItsOwn)
{
    makeInCloud(plan, "the content");
    ASSERT_TRUE(readCoordinated(plan));
    const auto copy = drive.appending("Copy.txt");
    fs::copy_file(plan.path(), copy.path());
    ASSERT_EQ(setExtendedAttribute(copy, kContentAttribute, "stored"), std::nullopt);
    std::ofstream(copy.path()) << "the content, changed";
    ASSERT_EQ(evict(plan), std::nullopt);
    EXPECT_THAT(names(store), ElementsAre("stored")) << "an unchanged one need not be sent";
    ASSERT_EQ(evict(copy), std::nullopt);
    EXPECT_EQ(names(store).size(), 2);
    EXPECT_EQ(*readCoordinated(plan), "the content");
    EXPECT_EQ(*readCoordinated(copy), "the content, changed");
}

TEST_F(DocumentStoreTest, KeepsHereWhatCannotBeSent)
{
    platform.drive.tree("orvane~Quillbox/Folder/ orvane~Quillbox/link->Folder orvane~Quillbox/Open.txt");
    EXPECT_EQ(evict(drive.appending("Folder"))->code, ErrorCode::kUnsupported);
    EXPECT_EQ(evict(drive.appending("link"))->code, ErrorCode::kUnsupported);
    EXPECT_EQ(evict(drive.appending("Gone.txt"))->code, ErrorCode::kNoSuchFile);
    EXPECT_EQ(evict(home.appending("catalog.sqlite"))->code, ErrorCode::kUnsupported);
    const int open = ::open(drive.appending("Open.txt").path().c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(evict(drive.appending("Open.txt"))->code, EBUSY);
    ::close(open);
    InstalledPlatform bound;
    EXPECT_EQ(bound.services().cloud.evictDocument(bound.drive.file("Plan.txt"))->code, ErrorCode::kUnsupported);
    EXPECT_THAT(names(bound.drive.url()), ElementsAre("Plan.txt"));
}

// Whatever happens on the way, at whichever system call: a program that saves, a failure, an end by force.
class InterruptedContentTest : public DocumentStoreTest {
protected:
    void SetUp() override
    {
        if (!canMakeCallsFail())
            GTEST_SKIP() << "no system call filters here";
    }

    void begin(bool inCloud)
    {
        for (const auto& folder : {drive, store})
            if (fs::exists(folder.path()))
                for (const auto& entry : fs::directory_iterator(folder.path()))
                    fs::remove_all(entry.path());
        if (inCloud)
            makeInCloud(plan, "the content");
        else
            platform.drive.file("orvane~Quillbox/Plan.txt", "the content");
    }

    void change(bool inCloud)
    {
        if (inCloud) {
            if (auto content = documents.fetch(plan, nullptr))
                error = documents.install(content.value(), plan);
            else
                error = content.error();
        } else {
            error = documents.evict(plan);
        }
    }

    void expectWhole(int n, const char* content = "the content")
    {
        unfinished.clearUp();
        EXPECT_TRUE(isInCloud(plan) || fs::exists(plan.path())) << "at call " << n;
        for (const auto& name : names(drive))
            EXPECT_FALSE(name.starts_with(".tsd-temporary")) << "at call " << n;
        if (isInCloud(plan)) {
            auto fetched = documents.fetch(plan, nullptr);
            EXPECT_TRUE(fetched && !documents.install(fetched.value(), plan)) << "at call " << n;
        }
        EXPECT_EQ(read(plan), content) << "at call " << n;
    }

    const UnfinishedWork unfinished{home.appending("unfinished")};
    const DocumentStore documents{store, platform.services().text, platform.services().types, unfinished};
    std::optional<Error> error;
};

TEST_F(InterruptedContentTest, IsWholeAfterAnyFailure)
{
    for (const bool inCloud : {true, false})
        for (const int errorNumber : {EIO, ENOSPC, EACCES, EINTR}) {
            bool wasReached = true;
            for (int n = 1; wasReached && !HasFailure(); ++n) {
                begin(inCloud);
                wasReached = runWithFailingCall(n, errorNumber, [&] { change(inCloud); });
                EXPECT_EQ(isInCloud(plan), inCloud == error.has_value()) << "at call " << n;
                expectWhole(n);
            }
        }
}

TEST_F(InterruptedContentTest, IsWholeAfterTheProgramWasKilled)
{
    for (const bool inCloud : {true, false}) {
        bool wasReached = true;
        for (int n = 1; wasReached && !HasFailure(); ++n) {
            begin(inCloud);
            OtherProcess other([&](OtherProcess&) {
                (void)runInterrupted(
                    n, [] { ::kill(::getpid(), SIGKILL); }, [&] { change(inCloud); });
            });
            wasReached = !other.finish();
            expectWhole(n);
        }
    }
}

TEST_F(InterruptedContentTest, IsNeverOlderThanWhatAProgramSaved)
{
    for (const bool replaces : {true, false})
        for (const bool inCloud : {true, false}) {
            bool wasReached = true;
            for (int n = 1; wasReached && !HasFailure(); ++n) {
                begin(inCloud);
                const auto save = [&] {
                    const auto where = drive.appending(replaces ? "New.txt" : "Plan.txt");
                    std::ofstream(where.path()) << "saved";
                    if (replaces)
                        fs::rename(where.path(), plan.path());
                };
                // Writing into a file that is just being sent waits for that: the other program is not this thread.
                std::thread other;
                wasReached = runInterrupted(
                    n, [&] { replaces ? save() : void(other = std::thread(save)); }, [&] { change(inCloud); });
                if (other.joinable())
                    other.join();
                expectWhole(n, wasReached ? "saved" : "the content");
            }
        }
}

} // namespace
} // namespace tessel
