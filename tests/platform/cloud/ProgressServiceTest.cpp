#include "platform/cloud/ProgressService.h"

#include "platform/run/MainQueue.h"
#include "tests/support/ManualClock.h"

#include <gmock/gmock.h>

#include <memory>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Observer final : public ProgressObserver {
public:
    void observeValueForKeyPath(std::string_view keyPath, const std::shared_ptr<Progress>& progress) override
    {
        told.push_back(std::string(keyPath) + " " + progress->description());
    }

    std::vector<std::string> told;
};

class ProgressServiceTest : public testing::Test {
protected:
    std::shared_ptr<ProgressService::Subscriber> subscribe(const std::string& name)
    {
        return service.addSubscriberForFileURL(URL::file("/" + name), [this, name](const auto& progress) {
            events.push_back(name + " published " + progress->description());
            return [this, name] { events.push_back(name + " withdrawn"); };
        });
    }

    ManualClock clock;
    MainQueue queue{clock};
    ProgressService service{queue};
    std::vector<std::string> events;
};

TEST_F(ProgressServiceTest, TellsTheSubscribersOfAFileFromItsBeginningToItsEnd)
{
    const auto early = subscribe("a");
    const auto other = subscribe("b");
    {
        const auto publication = service.publishForFileURL(URL::file("/a"));
        publication.progress().update(3, 10);
        EXPECT_THAT(events, IsEmpty()) << "from whichever thread: told on the main queue";
        queue.runReady();
        const auto late = subscribe("a");
        queue.runReady();
        EXPECT_THAT(events, ElementsAre("a published <Progress file 3/10>", "a published <Progress file 3/10>"));
        service.removeSubscriber(late);
        service.removeSubscriber(late);
        EXPECT_THAT(events, ElementsAre(testing::_, testing::_, "a withdrawn"));
    }
    queue.runReady();
    EXPECT_THAT(events, ElementsAre(testing::_, testing::_, "a withdrawn", "a withdrawn"));

    events.clear();
    {
        const auto brief = service.publishForFileURL(URL::file("/a"));
    }
    service.removeSubscriber(early);
    queue.runReady();
    EXPECT_THAT(events, IsEmpty());
}

// As a preview does that is closed from inside a notice.
TEST_F(ProgressServiceTest, ASubscriptionMayEndInsideItsOwnHandlers)
{
    std::shared_ptr<ProgressService::Subscriber> subscriber;
    subscriber = service.addSubscriberForFileURL(URL::file("/a"), [&](const auto&) {
        service.removeSubscriber(subscriber);
        return [&] { events.push_back("withdrawn"); };
    });
    auto publication = std::make_unique<ProgressService::Publication>(
        service, URL::file("/a"), std::make_shared<Progress>(queue, kProgressKindFile));
    queue.runReady();
    EXPECT_THAT(events, ElementsAre("withdrawn"));

    subscriber = service.addSubscriberForFileURL(URL::file("/a"), [&](const auto&) {
        return [&] {
            events.push_back("withdrawn");
            service.removeSubscriber(subscriber);
        };
    });
    queue.runReady();
    publication.reset();
    queue.runReady();
    EXPECT_THAT(events, ElementsAre("withdrawn", "withdrawn"));
}

TEST_F(ProgressServiceTest, ObserversAreToldTheLastOfManyChanges)
{
    const auto progress = std::make_shared<Progress>(queue, kProgressKindFile);
    EXPECT_EQ(progress->fractionCompleted(), 0) << "the total is not known";
    const auto observer = std::make_shared<Observer>();
    progress->addObserver(observer, kFractionCompletedKey);
    progress->addObserver(std::make_shared<Observer>(), kFractionCompletedKey); // gone already
    for (int done = 1; done <= 1000; ++done)
        progress->update(done, 2000);
    queue.runReady();
    progress->update(1000, 2000);
    queue.runReady();
    EXPECT_THAT(observer->told, ElementsAre("fractionCompleted <Progress file 1000/2000>"));
    EXPECT_EQ(progress->fractionCompleted(), 0.5);

    progress->removeObserver(*observer, "another key");
    progress->update(1001, 2000);
    queue.runReady();
    EXPECT_EQ(observer->told.size(), 2U);
    progress->removeObserver(*observer, kFractionCompletedKey);
    progress->update(1002, 2000);
    queue.runReady();
    EXPECT_EQ(observer->told.size(), 2U);
}

} // namespace
} // namespace tessel
