#include "platform/qt/thumbnails/ThumbnailQueue.h"

#include "platform/qt/thumbnails/ThumbnailProvider.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QUrl>

#include <atomic>
#include <filesystem>
#include <future>

namespace tessel::qt {
namespace {

using ::testing::ElementsAre;
using Outcome = MadeThumbnail::Outcome;
using namespace std::chrono_literals;

constexpr auto kPatience = 30s;

QImage picture()
{
    QImage image(100, 50, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

class ThumbnailQueueTest : public ::testing::Test {
protected:
    ThumbnailCache cache() const { return {bytes("cache"), "tesseldrive-1"}; }
    QByteArray bytes(std::string_view name) const { return QByteArray::fromStdString(drive.url(name).path()); }

    // Notes what it is asked for; waits at the gate for the file "gate".
    ThumbnailQueue::Maker maker(Outcome outcome = Outcome::Made)
    {
        return [this, outcome](const ThumbnailOriginal& original, ThumbnailSize, const std::stop_token&) {
            const auto name = original.path.mid(original.path.lastIndexOf('/') + 1);
            madeNames.push_back(name.toStdString());
            if (name == "gate") {
                atGate.set_value();
                gate.get_future().wait_for(kPatience);
            }
            return MadeThumbnail{outcome, outcome == Outcome::Made ? picture() : QImage()};
        };
    }

    // Asks and waits for the answer.
    QImage answer(ThumbnailQueue& queue, std::string_view name, ThumbnailSize size = ThumbnailSize::Normal) const
    {
        std::promise<QImage> promise;
        queue.request(bytes(name), size, [&](const QImage& image) { promise.set_value(image); });
        auto future = promise.get_future();
        return future.wait_for(kPatience) == std::future_status::ready ? future.get()
                                                                       : throw std::runtime_error("late");
    }

    // A thumbnail is kept some time after it was answered with; a queue that ends before does not keep it.
    void waitUntilKept(std::string_view name) const
    {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (cache().find(*ThumbnailOriginal::at(bytes(name)), ThumbnailSize::Normal).isNull()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(1ms);
        }
    }

    // Has the thread that makes wait at the gate, and calls `ask` while the thread that looks waits as well; on return,
    // whatever was asked for is known to be missing.
    void whileBusy(ThumbnailQueue& queue, const std::function<void()>& ask)
    {
        queue.request(bytes("gate"), ThumbnailSize::Normal, [](const QImage&) {});
        ASSERT_EQ(atGate.get_future().wait_for(kPatience), std::future_status::ready);
        std::promise<void> isLooking;
        std::promise<void> hasAsked;
        std::promise<void> hasLooked;
        queue.request(bytes("missing"), ThumbnailSize::Normal, [&](const QImage&) {
            isLooking.set_value();
            hasAsked.get_future().wait_for(kPatience);
        });
        ASSERT_EQ(isLooking.get_future().wait_for(kPatience), std::future_status::ready);
        // The oldest request is the last that is looked for.
        queue.request(bytes("missing too"), ThumbnailSize::Normal, [&](const QImage&) { hasLooked.set_value(); });
        ask();
        hasAsked.set_value();
        ASSERT_EQ(hasLooked.get_future().wait_for(kPatience), std::future_status::ready);
    }

    TemporaryDrive drive;
    std::vector<std::string> madeNames;
    std::promise<void> atGate;
    std::promise<void> gate;
};

TEST_F(ThumbnailQueueTest, MakesAThumbnailOnceAndFindsItLater)
{
    drive.file("a.png", "content");
    {
        ThumbnailQueue queue(cache(), maker());
        EXPECT_EQ(answer(queue, "a.png").size(), QSize(100, 50));
        waitUntilKept("a.png");
    }
    ThumbnailQueue queue(cache(), maker());
    EXPECT_EQ(answer(queue, "a.png").size(), QSize(100, 50));
    EXPECT_THAT(madeNames, ElementsAre("a.png"));
    drive.file("a.png", "more content");
    EXPECT_FALSE(answer(queue, "a.png").isNull());
    EXPECT_THAT(madeNames, ElementsAre("a.png", "a.png"));
}

TEST_F(ThumbnailQueueTest, TriesInVainOnceUntilTheFileChanges)
{
    drive.file("bad.png", "content");
    ThumbnailQueue queue(cache(), maker(Outcome::Failed));
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(answer(queue, "bad.png").isNull());
    EXPECT_THAT(madeNames, ElementsAre("bad.png"));
    drive.file("bad.png", "longer content");
    EXPECT_TRUE(answer(queue, "bad.png").isNull());
    EXPECT_THAT(madeNames, ElementsAre("bad.png", "bad.png"));
}

TEST_F(ThumbnailQueueTest, WorksForTheNewestRequestFirstAndNotForThoseThatWereDropped)
{
    for (const auto* name : {"gate", "a", "b", "c", "d", "e"})
        drive.file(name, "content");
    std::atomic<int> answers = 0;
    {
        ThumbnailQueue queue(cache(), maker(), 1);
        std::promise<void> last;
        ThumbnailQueue::Ticket droppedLater = 0;
        whileBusy(queue, [&] {
            const auto count = [&](const QImage&) { ++answers; };
            queue.request(bytes("a"), ThumbnailSize::Normal, [&](const QImage&) { ++answers, last.set_value(); });
            const auto dropped = queue.request(bytes("b"), ThumbnailSize::Normal, count);
            queue.request(bytes("c"), ThumbnailSize::Normal, count);
            const auto shared = queue.request(bytes("d"), ThumbnailSize::Normal, count);
            queue.request(bytes("d"), ThumbnailSize::Normal, count);
            queue.request(bytes("c"), ThumbnailSize::Normal, count);
            droppedLater = queue.request(bytes("e"), ThumbnailSize::Normal, count);
            queue.cancel(dropped);
            queue.cancel(shared);
        });
        queue.cancel(droppedLater);
        gate.set_value();
        ASSERT_EQ(last.get_future().wait_for(kPatience), std::future_status::ready);
    }
    EXPECT_THAT(madeNames, ElementsAre("gate", "c", "d", "a"));
    EXPECT_EQ(answers, 4);
}

TEST_F(ThumbnailQueueTest, EndsWithoutWorkingThroughWhatWaits)
{
    for (const auto* name : {"gate", "a"})
        drive.file(name, "content");
    auto queue = std::make_unique<ThumbnailQueue>(cache(), maker(), 1);
    std::promise<void> isDropped;
    whileBusy(*queue, [&] {
        const std::shared_ptr<void> answerLives(nullptr, [&](void*) { isDropped.set_value(); });
        queue->request(bytes("a"), ThumbnailSize::Normal, [answerLives](const QImage&) { ADD_FAILURE(); });
    });
    auto ended = std::async(std::launch::async, [&] { queue.reset(); });
    EXPECT_EQ(isDropped.get_future().wait_for(kPatience), std::future_status::ready);
    gate.set_value();
    ended.get();
    EXPECT_THAT(madeNames, ElementsAre("gate"));
}

TEST_F(ThumbnailQueueTest, DoesNotWaitForADocumentThatTakesLong)
{
    drive.file("a", "content");
    std::promise<void> begun;
    auto queue = std::make_unique<ThumbnailQueue>(
        cache(), [&](const ThumbnailOriginal&, ThumbnailSize, const std::stop_token& stop) {
            begun.set_value();
            for (int time = 0; time < 30'000 && !stop.stop_requested(); ++time)
                std::this_thread::sleep_for(1ms);
            return MadeThumbnail{stop.stop_requested() ? Outcome::NotMade : Outcome::Failed, {}};
        });
    queue->request(bytes("a"), ThumbnailSize::Normal, [](const QImage& image) { EXPECT_TRUE(image.isNull()); });
    ASSERT_EQ(begun.get_future().wait_for(kPatience), std::future_status::ready);
    queue.reset();
    EXPECT_FALSE(std::filesystem::exists(drive.url("cache").path())) << "waited until it had failed";
}

// A program saves the document while its thumbnail is being made from what may be half of it.
TEST_F(ThumbnailQueueTest, KeepsNothingOfAFileThatChangedUnderWay)
{
    drive.file("a.png", "half");
    ThumbnailQueue queue(cache(), [&](const ThumbnailOriginal&, ThumbnailSize, const std::stop_token&) {
        drive.file("a.png", "the whole content");
        return MadeThumbnail{Outcome::Made, picture()};
    });
    EXPECT_TRUE(answer(queue, "a.png").isNull());
    EXPECT_FALSE(std::filesystem::exists(drive.url("cache").path()));
}

TEST_F(ThumbnailQueueTest, ReadsNothingButRegularFilesOutsideOfTheCache)
{
    drive.tree("folder/ cache/normal/");
    drive.file("cache/normal/x.png", "content");
    ThumbnailQueue queue(cache(), maker());
    for (const auto* name : {"folder", "missing", "cache/normal/x.png"})
        EXPECT_TRUE(answer(queue, name).isNull()) << name;
    EXPECT_TRUE(madeNames.empty());
}

class ThumbnailProviderTest : public ThumbnailQueueTest {
protected:
    // What QML's engine hands to a provider.
    static QString identifier(const QByteArray& path, const char* time = "1")
    {
        const QUrl url("image://thumbnail/" + path.toPercentEncoding("/") + "?" + time);
        return url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
    }
};

TEST_F(ThumbnailProviderTest, FindsFilesOfAnyName)
{
    for (const QByteArray name : {"/a b", "/100%25", "/q?x#y", "/\xc3\xa4", "/\xff\xfe", "/a|b;c", "/%41", "/a?1"})
        EXPECT_EQ(ThumbnailProvider::pathOf(identifier(name)), name) << name.toStdString();
}

TEST_F(ThumbnailProviderTest, AnswersAnImageThatFitsOrNoneWithoutAnError)
{
    drive.file("\xff.png", "content");
    ThumbnailProvider provider(cache(), maker());
    const auto respond = [&](std::string_view name) {
        std::unique_ptr<QQuickImageResponse> response(
            provider.requestImageResponse(identifier(bytes(name)), QSize(40, 40)));
        QSignalSpy spy(response.get(), &QQuickImageResponse::finished);
        EXPECT_TRUE(spy.wait(30'000));
        EXPECT_TRUE(response->errorString().isEmpty());
        const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
        return factory ? factory->textureSize() : QSize();
    };
    EXPECT_EQ(respond("\xff.png"), QSize(40, 20));
    std::filesystem::remove(drive.url("\xff.png").path());
    EXPECT_EQ(respond("\xff.png"), QSize(40, 20)); // from memory
    EXPECT_EQ(respond("missing"), QSize());
}

// The engine waits for each response that it cancelled, and deletes it then.
TEST_F(ThumbnailProviderTest, FinishesACancelledResponseOnce)
{
    drive.file("gate", "content");
    ThumbnailProvider provider(cache(), maker());
    auto* response = provider.requestImageResponse(identifier(bytes("gate")), QSize(40, 40));
    QSignalSpy spy(response, &QQuickImageResponse::finished);
    ASSERT_EQ(atGate.get_future().wait_for(kPatience), std::future_status::ready);
    response->cancel();
    response->cancel();
    EXPECT_TRUE(spy.wait(30'000));
    delete response;
    gate.set_value();
    EXPECT_EQ(spy.count(), 1);
}

} // namespace
} // namespace tessel::qt
