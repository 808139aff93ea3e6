#pragma once

#include "platform/base/Platform.h"
#include "platform/documents/DocumentDecoder.h"
#include "tests/support/InstalledPlatform.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace tessel {

/// The programs that this process has started and not waited for, by all of its threads.
inline std::vector<pid_t> children()
{
    std::vector<pid_t> result;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        for (pid_t child = 0; list >> child;)
            result.push_back(child);
    }
    return result;
}

/// Asks the real program, and waits for its answers.
class DecoderFixture : public ::testing::Test {
public:
    struct Painted {
        std::optional<ContentPicture> picture;
        std::optional<ContentProblem> problem;
    };

protected:
    void SetUp() override
    {
        if (std::string_view(TESSELDRIVE_DECODER).empty())
            GTEST_SKIP() << "built without Qt, so without the program that reads documents";
    }

    [[nodiscard]] ContentFacts inspected(const URL& url)
    {
        std::optional<ContentFacts> answer;
        decoder().inspect(url, [&](const ContentFacts& facts) { answer = facts; });
        EXPECT_TRUE(platform.runUntil([&] { return answer.has_value(); }));
        return answer.value_or(ContentFacts());
    }

    [[nodiscard]] Painted paint(const DocumentDecoder::PictureWish& wish)
    {
        std::promise<Painted> answer;
        decoder().paint(wish, [&](const auto& picture, auto problem) { answer.set_value({picture, problem}); });
        return answer.get_future().get();
    }
    [[nodiscard]] Painted paint(const URL& url, int width, int height)
    {
        return paint({.url = url, .width = width, .height = height, .part = {}});
    }

    [[nodiscard]] DocumentDecoder& decoder() { return platform::installed().decoder; }

    InstalledPlatform platform;
};

} // namespace tessel
