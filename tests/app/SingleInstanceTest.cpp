#include "platform/linux/instance/SingleInstance.h"
#include "platform/linux/instance/RequestText.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tessel {
namespace {

using namespace std::chrono_literals;

/// Requests that a first start has taken.
class Taken {
public:
    void add(const OutsideRequest& request)
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        changed_.notify_all();
    }
    std::vector<OutsideRequest> waitFor(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, 10s, [&] { return requests_.size() >= count; });
        return requests_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<OutsideRequest> requests_;
};

class SingleInstanceTest : public testing::Test {
protected:
    [[nodiscard]] SingleInstance::Claim claim(const OutsideRequest& request = {}) const
    {
        return SingleInstance::claim(folder.url("runtime"), "home", request);
    }
    /// Sends bytes to the first start's socket, as no program of ours does.
    void sendRaw(const std::string& bytes) const
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        for (const auto& entry : std::filesystem::directory_iterator(folder.url("runtime").path()))
            if (entry.path().extension() == ".socket")
                entry.path().string().copy(address.sun_path, sizeof address.sun_path - 1);
        const FileDescriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET, 0));
        ASSERT_EQ(::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        static_cast<void>(::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
    }

    const TemporaryDrive folder;
    Taken taken;
};

TEST_F(SingleInstanceTest, HandsOverEverythingToTheFirst)
{
    auto first = claim();
    ASSERT_TRUE(first.instance);
    OutsideRequest request{.urls = {"tesseldriveapp:/a", "file:///b"},
                           .shortcut = ShortcutItem{"type", {{"id", std::int64_t{7}}}},
                           .activationToken = "token"};
    // The second start comes before the first is ready, and waits.
    std::thread second([&] {
        const auto later = claim(request);
        EXPECT_TRUE(later.wasHandedOver);
        EXPECT_FALSE(later.instance);
    });
    std::this_thread::sleep_for(50ms);
    first.instance->serve([this](const OutsideRequest& given) { taken.add(given); });
    second.join();
    const auto requests = taken.waitFor(1);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].urls, request.urls);
    EXPECT_EQ(requests[0].activationToken, "token");
    ASSERT_TRUE(requests[0].shortcut);
    EXPECT_EQ(requests[0].shortcut->userInfo, request.shortcut->userInfo);

    EXPECT_TRUE(SingleInstance::claim(folder.url("runtime"), "another home", {}).instance);
    first.instance.reset();
    EXPECT_TRUE(claim().instance) << "the first has ended";
}

TEST_F(SingleInstanceTest, IgnoresWhatIsNoRequest)
{
    auto first = claim();
    ASSERT_TRUE(first.instance);
    first.instance->serve([this](const OutsideRequest& given) { taken.add(given); });
    for (const auto& bytes :
         {std::string("x"), std::string(100'000, 'x'), std::string("{}"), std::string("{\"urls\": 5, \"token\": []}"),
          std::string("{\"urls\": [1], \"token\": \"\"}"), std::string(60'000, '[')})
        sendRaw(bytes);
    EXPECT_TRUE(claim({.urls = {"a"}, .shortcut = {}, .activationToken = {}}).wasHandedOver);
    EXPECT_EQ(taken.waitFor(1).size(), 1U);
}

TEST_F(SingleInstanceTest, TakesThePlaceOfOneThatHasDied)
{
    const auto child = ::fork();
    if (child == 0) {
        const auto first = claim();
        ::_exit(first.instance ? 0 : 1); // without clearing up
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(claim().instance);
}

TEST(OutsideRequestTest, EncodesPathsThatAreDecodedTwice)
{
    EXPECT_EQ(applicationURL("/a b%41"), "tesseldriveapp:/a%20b%252541");
    EXPECT_EQ(applicationURLOf("file:///a%20b", "details"), "tesseldriveapp:/a%20b?mode=details");
    EXPECT_EQ(applicationURLOf("tesseldriveapp:/a"), "tesseldriveapp:/a");
}

} // namespace
} // namespace tessel
