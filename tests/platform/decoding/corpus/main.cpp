// Documents of each kind, sound, damaged and hostile, are read by the program that reads documents. Whatever becomes of
// that one, this one gets an answer to each wish in time, and is left with nothing that is not its own. Everything
// follows from the seed.
#include "platform/linux/decoding/ProcessDecoder.h"
#include "platform/linux/files/SharedMimeTypes.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "tests/platform/decoding/corpus/Seeds.h"
#include "tests/support/TemporaryDrive.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <string>

namespace {

using namespace tessel;
using Time = std::chrono::steady_clock;
using corpus::Seed;

constexpr auto kLimit = std::chrono::seconds(10);
constexpr auto kSlack = std::chrono::seconds(20); // for a machine with other work, and for trying once more
constexpr std::size_t kAtOnce = 8;

constexpr const char* kProblems[] = {"empty", "damaged", "encrypted", "too large", "too slow", "gone", "not readable"};

/// Counts the processes that died. Those that did so of what a sanitizer found have exited with 1.
class DeathCounter final : public LogSink {
public:
    void write(const Date&, LogLevel, std::string_view line) override
    {
        deaths += line.find("ended with status") != std::string_view::npos ? 1 : 0;
        findings += line.find("ended with status 256 ") != std::string_view::npos ? 1 : 0;
    }

    int deaths = 0;
    int findings = 0;
};

class Damage {
public:
    explicit Damage(unsigned seed) : random_(seed) {}

    std::string of(std::string content)
    {
        if (content.size() < 2)
            return content;
        switch (below(5)) {
        case 0:
            content.resize(below(content.size()));
            break;
        case 1:
            flip(content, 1);
            break;
        case 2:
            flip(content, 1 + below(32));
            break;
        case 3:
            content.replace(below(content.size()), 4, below(2) == 0 ? "\xff\xff\xff\xff" : "\x7f\xff\xff\xff");
            break;
        default:
            content.insert(below(content.size()), content.substr(below(content.size()), below(2000)));
        }
        return content;
    }

    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }

private:
    void flip(std::string& content, std::size_t bits)
    {
        for (std::size_t bit = 0; bit < bits; ++bit) {
            auto& byte = content[below(content.size())];
            byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << below(8)));
        }
    }

    std::mt19937 random_;
};

/// Asks and counts. Inspections are answered on the main queue, which this runs.
class Reading {
public:
    explicit Reading(const std::string& program)
        : decoder_(std::make_unique<ProcessDecoder>(ProcessDecoder::Services{queue_, log_, types_},
                                                    ProcessDecoder::Options{.program = program, .timeLimit = kLimit}))
    {
        log_.addSink(sink_);
        queue_.setWakeHandler([this] { woken_.notify_one(); });
    }

    void read(const Seed& seed)
    {
        waitUntil([this] { return underWay_ < kAtOnce; });
        const auto url = drive_.file(std::to_string(++documents_) + seed.name, seed.content);
        begin(2);
        const auto asked = Time::now();
        const std::shared_ptr<void> file(nullptr, [url](void*) { std::filesystem::remove(url.path()); });
        decoder_->inspect(url, [this, asked, file](const ContentFacts& facts) {
            const auto* const shown = facts.kind == ContentKind::None ? "nothing reads it" : "known";
            end("inspected", facts.problem ? kProblems[static_cast<int>(*facts.problem)] : shown, asked);
        });
        decoder_->paint({.url = url, .width = 300, .height = 300, .part = {}},
                        [this, asked, seed, file](const auto& picture, auto problem) {
                            if (seed.isWhole && (!picture || !hasPixels(*picture)))
                                fail(seed.name + " is sound, but was not painted");
                            end("painted", problem ? kProblems[static_cast<int>(*problem)] : "a picture", asked);
                        });
    }

    /// @returns whether all went as it must
    bool finish()
    {
        waitUntil([this] { return underWay_ == 0; });
        decoder_.reset();
        for (const auto& [what, count] : counts_)
            std::cout << what << ": " << count << '\n';
        std::cout << "processes that died: " << sink_->deaths << "\nlongest wait: " << longest_.count() << " ms\n";
        if (sink_->findings > 0)
            fail("a sanitizer has found something");
        if (longest_ > kLimit + kSlack)
            fail("an answer came too late");
        return !hasFailed_;
    }

private:
    static bool hasPixels(const ContentPicture& picture)
    {
        const auto* const begin = picture.pixels.get();
        return std::any_of(begin, begin + picture.height * picture.stride,
                           [](std::byte byte) { return byte != std::byte{0}; });
    }

    void begin(std::size_t wishes)
    {
        const std::lock_guard lock(mutex_);
        underWay_ += wishes;
    }

    void end(const std::string& work, const std::string& answer, Time::time_point asked)
    {
        const std::lock_guard lock(mutex_);
        ++counts_[work + ", " + answer];
        longest_ = std::max(longest_, std::chrono::duration_cast<std::chrono::milliseconds>(Time::now() - asked));
        --underWay_;
        woken_.notify_one();
    }

    void fail(const std::string& why)
    {
        std::cerr << why << std::endl;
        hasFailed_ = true;
    }

    void waitUntil(const std::function<bool()>& condition)
    {
        while (true) {
            queue_.runReady();
            std::unique_lock lock(mutex_);
            if (condition())
                return;
            woken_.wait_for(lock, std::chrono::milliseconds(5));
        }
    }

    TemporaryDrive drive_;
    SystemClock clock_;
    MainQueue queue_{clock_};
    UnifiedLog log_{clock_};
    SharedMimeTypes types_{"en", SharedMimeTypes::userDataFolders()};
    std::shared_ptr<DeathCounter> sink_ = std::make_shared<DeathCounter>();
    std::mutex mutex_;
    std::condition_variable woken_;
    std::size_t documents_ = 0;
    std::size_t underWay_ = 0;
    std::map<std::string, int> counts_;
    std::chrono::milliseconds longest_{};
    std::atomic<bool> hasFailed_ = false;
    std::unique_ptr<ProcessDecoder> decoder_; ///< Ends first.
};

auto openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

bool readAll(std::size_t count, unsigned seed)
{
    const auto documents = corpus::seeds();
    Damage damage(seed);
    Reading reading(TESSELDRIVE_DECODER);
    for (const auto& document : documents)
        reading.read(document);
    for (std::size_t number = documents.size(); number < count; ++number) {
        const auto& document = documents[damage.below(documents.size())];
        reading.read({document.name, damage.of(document.content), false});
    }
    return reading.finish();
}

} // namespace

int main(int argc, char* argv[])
{
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 2000;
    const auto seed = static_cast<unsigned>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1);
    const auto before = openDescriptors();
    const bool isGood = readAll(count, seed);
    if (openDescriptors() != before)
        std::cerr << "descriptors are left open" << std::endl;
    return isGood && openDescriptors() == before ? 0 : 1;
}
