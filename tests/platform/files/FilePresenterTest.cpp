#include "platform/files/FilePresenter.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/FileManager.h"
#include "platform/linux/StartFolders.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/run/OperationQueue.h"
#include "tests/support/InstalledPlatform.h"
#include "tests/support/OtherProcess.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

// What a presenter was told, and what accesses did, in the order in which it happened.
class Course {
public:
    void add(std::string event)
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
    }

    [[nodiscard]] std::vector<std::string> events() const
    {
        const std::lock_guard lock(mutex_);
        return events_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> events_;
};

class RecordingPresenter final : public FilePresenter {
public:
    RecordingPresenter(URL url, Course& course) : url_(std::move(url)), course_(course) {}
    ~RecordingPresenter() override { FileCoordinator::removeFilePresenter(*this); }

    [[nodiscard]] std::optional<URL> presentedItemURL() const override { return url_; }
    [[nodiscard]] OperationQueue& presentedItemOperationQueue() override { return queue_; }

    void relinquishPresentedItemToReader(const Done& done) override
    {
        course_.add("to reader");
        done();
    }
    void relinquishPresentedItemToWriter(const Done& done) override
    {
        course_.add("to writer");
        done();
    }
    void presentedItemDidChange() override { course_.add("changed"); }
    void presentedItemDidMoveToURL(const URL& url) override
    {
        course_.add("moved to " + std::string(url.lastPathComponent()));
    }
    void accommodatePresentedItemDeletionWithCompletionHandler(const Completion& completion) override
    {
        course_.add("deleted");
        completion(refusal);
    }
    void accommodatePresentedSubitemDeletionAtURL(const URL& url, const Completion& completion) override
    {
        course_.add("deleted inside: " + std::string(url.lastPathComponent()));
        completion(refusal);
    }

    std::optional<Error> refusal;

private:
    const URL url_;
    Course& course_;
    OperationQueue queue_{"presenter", QualityOfService::UserInitiated};
};

void check(const std::optional<Error>& error)
{
    if (error)
        throw std::runtime_error(error->description);
}

class FilePresenterTest : public testing::Test {
protected:
    std::shared_ptr<RecordingPresenter> present(const URL& url)
    {
        auto presenter = std::make_shared<RecordingPresenter>(url, course);
        FileCoordinator::addFilePresenter(*presenter);
        return presenter;
    }

    // Whether something comes true within 30 seconds, while tasks run and the platform's time stands or passes.
    [[nodiscard]] bool comesTrue(const std::function<bool()>& condition, double secondsATime = 0.01)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            platform.turn(secondsATime);
            std::this_thread::yield();
        }
        return true;
    }

    [[nodiscard]] bool comes(const std::string& event)
    {
        return comesTrue([&] {
            const auto events = course.events();
            return std::find(events.begin(), events.end(), event) != events.end();
        });
    }

    static void move(const URL& from, const URL& to)
    {
        FileCoordinator coordinator;
        std::optional<Error> failure;
        check(coordinator.coordinateWriting(from, WritingOptions::ForMoving, to, WritingOptions::ForReplacing,
                                            [&](const URL& source, const URL& destination) {
                                                coordinator.itemWillMove(source, destination);
                                                failure = platform::installed().files.moveItem(source, destination);
                                                coordinator.itemDidMove(source, destination);
                                            }));
        check(failure);
    }

    [[nodiscard]] std::optional<Error> remove(const URL& url)
    {
        return FileCoordinator().coordinateWriting(url, WritingOptions::ForDeleting, [&](const URL& item) {
            course.add("removing");
            check(platform::installed().files.removeItem(item, {}));
        });
    }

    InstalledPlatform platform;
    const TemporaryDrive& drive = platform.drive;
    Course course;
};

TEST_F(FilePresenterTest, IsToldBeforeAndAfterAnAccess)
{
    const auto plan = drive.file("Plan.txt", "first");
    const auto presenter = present(plan);
    check(FileCoordinator().coordinateReading(plan, ReadingOptions::None, [&](const URL&) { course.add("reading"); }));
    check(FileCoordinator().coordinateWriting(plan, WritingOptions::None, [&](const URL&) {
        course.add("writing");
        drive.file("Plan.txt", "second");
    }));
    EXPECT_TRUE(comes("changed"));
    move(plan, drive.url("Report.txt"));
    EXPECT_TRUE(comes("moved to Report.txt"));
    check(remove(drive.url("Report.txt")));
    EXPECT_THAT(course.events(), ElementsAre("to reader", "reading", "to writer", "writing", "changed", "to writer",
                                             "moved to Report.txt", "deleted", "removing"));
}

TEST_F(FilePresenterTest, IsNotToldOfItsOwnAccesses)
{
    const auto plan = drive.file("Plan.txt", "first");
    const auto presenter = present(plan);
    const auto other = present(drive.file("Other.txt"));
    FileCoordinator coordinator(presenter.get());
    check(coordinator.coordinateWriting(plan, WritingOptions::ForMoving, drive.url("Report.txt"),
                                        WritingOptions::ForReplacing, [&](const URL& from, const URL& to) {
                                            drive.file("Plan.txt", "second");
                                            fs::remove(drive.url("Other.txt").path());
                                            EXPECT_TRUE(comes("deleted")) << "long after the change was to be seen";
                                            check(platform::installed().files.moveItem(from, to));
                                            coordinator.itemDidMove(from, to);
                                        }));
    EXPECT_THAT(course.events(), ElementsAre("deleted"));
    fs::remove(drive.url("Report.txt").path());
    EXPECT_TRUE(comesTrue([&] { return course.events().size() > 1; }));
    EXPECT_THAT(course.events(), ElementsAre("deleted", "deleted"));
}

TEST_F(FilePresenterTest, MayRefuseADeletion)
{
    const auto presenter = present(drive.file("Album.lookbook/1.png").deletingLastPathComponent());
    presenter->refusal = Error{Domain::General, ErrorCode::kUserCancelled, "It is unsaved.", "Unsaved"};
    EXPECT_EQ(remove(drive.url("Album.lookbook/1.png")), presenter->refusal);
    EXPECT_EQ(remove(drive.url("Album.lookbook")), presenter->refusal);
    EXPECT_THAT(course.events(), ElementsAre("deleted inside: 1.png", "deleted"));
    EXPECT_TRUE(fs::exists(drive.url("Album.lookbook/1.png").path()));
}

TEST_F(FilePresenterTest, IsToldWhatHappensAroundItAndInIt)
{
    const auto presenter = present(drive.file("Projects/Album.lookbook/1.png").deletingLastPathComponent());
    move(drive.url("Projects"), drive.url("Work"));
    EXPECT_TRUE(comes("moved to Album.lookbook"));
    check(FileCoordinator().coordinateWriting(drive.url("Work/Album.lookbook/1.png"), WritingOptions::None,
                                              [](const URL&) {}));
    EXPECT_TRUE(comes("changed"));
    check(remove(drive.url("Work")));
    EXPECT_THAT(course.events(),
                ElementsAre("to writer", "moved to Album.lookbook", "to writer", "changed", "deleted", "removing"));
}

TEST_F(FilePresenterTest, IsToldByOtherProcesses)
{
    const auto plan = drive.file("Plan.txt", "first");
    OtherProcess other([&](OtherProcess& self) {
        self.meet();
        check(FileCoordinator().coordinateWriting(plan, WritingOptions::None,
                                                  [&](const URL&) { drive.file("Plan.txt", "second"); }));
        move(plan, drive.url("Report.txt"));
        check(FileCoordinator().coordinateWriting(
            drive.url("Report.txt"), WritingOptions::ForDeleting,
            [&](const URL& url) { check(platform::installed().files.removeItem(url, {})); }));
    });
    const auto presenter = present(plan);
    other.meet();
    EXPECT_TRUE(other.finish());
    EXPECT_TRUE(comes("deleted"));
    EXPECT_THAT(course.events(), ElementsAre("to writer", "changed", "to writer", "moved to Report.txt", "deleted"));
    EXPECT_FALSE(fs::exists(drive.url("Report.txt").path()));
}

// A presenter whose process was killed, or is stopped, keeps nobody waiting for long.
TEST_F(FilePresenterTest, IsNotWaitedForWhenItsProcessIsGone)
{
    const auto plan = drive.file("Plan.txt", "first");
    OtherProcess other([&](OtherProcess& self) {
        Course ignored;
        const auto theirs = std::make_shared<RecordingPresenter>(plan, ignored);
        FileCoordinator::addFilePresenter(*theirs);
        self.meet();
        self.meet();
    });
    other.meet();
    const auto identifier = std::to_string(other.identifier()) + '-';
    other.kill();
    const auto presenter = present(plan);
    EXPECT_EQ(remove(plan), std::nullopt);
    EXPECT_THAT(course.events(), ElementsAre("deleted", "removing"));
    const auto home = drive.url().deletingLastPathComponent().appending("home");
    for (const auto& socket : fs::directory_iterator(coordinationFolder(home).appending("presenters").path()))
        EXPECT_FALSE(socket.path().filename().string().starts_with(identifier)) << "of the process that is gone";
}

// Programs save in many ways. In all of them the document stays what it was.
TEST_F(FilePresenterTest, SeesADocumentSavedByAProgramThatDoesNotCoordinate)
{
    const auto plan = drive.file("Plan.txt", "first").path();
    const auto presenter = present(drive.url("Plan.txt"));
    int version = 0;
    const auto save = [&](const char* name) { drive.file(name, "version " + std::to_string(++version)); };
    const std::function<void()> ways[] = {
        [&] { save("Plan.txt"); },
        [&] {
            save(".Plan.txt.swp");
            fs::rename(drive.url(".Plan.txt.swp").path(), plan);
        },
        [&] {
            fs::rename(plan, plan + "~");
            save("Plan.txt");
        },
        [&] {
            fs::remove(plan);
            save("Plan.txt");
        },
    };
    for (const auto& way : ways) {
        const auto count = course.events().size();
        way();
        EXPECT_TRUE(comesTrue([&] { return course.events().size() > count; }));
        platform.turn(1);
    }
    EXPECT_THAT(course.events(), testing::Each("changed"));
}

TEST_F(FilePresenterTest, GivesASlowProgramTimeToSave)
{
    const auto plan = drive.file("Plan.txt", "first").path();
    const auto presenter = present(drive.url("Plan.txt"));
    fs::rename(plan, plan + "~");
    EXPECT_TRUE(comesTrue([&] { return platform.services().mainQueue.nextDue().has_value(); }, 0))
        << "its absence is seen";
    platform.turn(0.2);
    drive.file("Plan.txt", "second");
    EXPECT_TRUE(comes("changed"));
    platform.turn(1);
    EXPECT_THAT(course.events(), testing::Each("changed"));
}

TEST_F(FilePresenterTest, FollowsADocumentThatOthersMoveAndDelete)
{
    drive.tree("Sub/");
    const auto plan = present(drive.file("Plan.txt", "first"));
    fs::rename(drive.url("Plan.txt").path(), drive.url("Sub/Report.txt").path());
    EXPECT_TRUE(comes("moved to Report.txt"));
    fs::rename(drive.url("Sub").path(), drive.url("Other").path());
    EXPECT_TRUE(comesTrue([&] { return course.events().size() > 1; }));
    fs::remove(drive.url("Other/Report.txt").path());
    EXPECT_TRUE(comes("deleted"));
    EXPECT_THAT(course.events(), ElementsAre("moved to Report.txt", "moved to Report.txt", "deleted"));
}

TEST_F(FilePresenterTest, FollowsADocumentInTheCloud)
{
    check(writePlaceholder(drive.url("Far.txt"), {"Far.txt", 9, {}, {}, "public.plain-text", "id", {}}));
    const auto presenter = present(drive.url("Far.txt"));
    move(drive.url("Far.txt"), drive.url("Away.txt"));
    EXPECT_TRUE(comes("moved to Away.txt"));
    drive.file("Away.txt", "the content");
    EXPECT_TRUE(comes("changed"));
}

TEST_F(FilePresenterTest, MayEndWhileItIsTold)
{
    const auto plan = drive.file("Plan.txt", "first");
    for (int i = 0; i < 50; ++i) {
        auto presenter = present(plan);
        std::thread writer([&] {
            check(FileCoordinator().coordinateWriting(plan, WritingOptions::None,
                                                      [&](const URL&) { drive.file("Plan.txt", std::to_string(i)); }));
        });
        presenter.reset();
        writer.join();
        platform.services().mainQueue.runReady();
    }
}

} // namespace
} // namespace tessel
