#include "tests/platform/decoding/DecoderFixture.h"
#include "tests/platform/decoding/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace tessel {
namespace {

using ::testing::HasSubstr;
using DocumentDecoderTest = DecoderFixture;

std::string contentOf(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

std::uint32_t pixel(const ContentPicture& picture, double x, double y)
{
    std::uint32_t value = 0;
    const auto* row = picture.pixels.get() + static_cast<int>(picture.height * y) * picture.stride;
    std::memcpy(&value, row + static_cast<int>(picture.width * x) * 4, sizeof value);
    return value;
}

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kBlue = 0xFF0000FF;

TEST_F(DocumentDecoderTest, TellsWhatADocumentIs)
{
    const auto& drive = platform.drive;
    EXPECT_EQ(inspected(drive.file("a.svg", documents::svg("<g/>"))),
              (ContentFacts{ContentKind::Image, std::nullopt, {200, 100}, 1, 0}));
    EXPECT_EQ(inspected(drive.file("named.txt", documents::pdf(3))),
              (ContentFacts{ContentKind::Pages, std::nullopt, {300, 600}, 3, 0}));
    EXPECT_EQ(inspected(drive.file("a.gif", documents::gif())),
              (ContentFacts{ContentKind::Image, std::nullopt, {2, 2}, 2, 0}));
    EXPECT_EQ(inspected(drive.file("a.txt", "Hello")).kind, ContentKind::Text);
    EXPECT_EQ(inspected(drive.file("README", "Hello")).kind, ContentKind::Text);
    EXPECT_EQ(inspected(drive.file("a.zip", "PK\3\4")).kind, ContentKind::None);
    EXPECT_EQ(inspected(drive.file("binary.txt", std::string("a\0b", 3))).kind, ContentKind::None);
}

TEST_F(DocumentDecoderTest, PaintsWholePicturesPartsAndFrames)
{
    const auto page = platform.drive.file("a.pdf", documents::pdf());
    const auto whole = paint(page, 200, 200).picture.value();
    EXPECT_EQ(std::pair(whole.width, whole.height), std::pair(100, 200));
    EXPECT_EQ(pixel(whole, 0.5, 0.25), kRed);
    EXPECT_EQ(pixel(whole, 0.5, 0.75), kWhite);

    const auto part =
        paint({.url = page, .width = 6000, .height = 6000, .part = Rect{0, 0.45, 0.1, 0.1}}).picture.value();
    EXPECT_EQ(std::pair(part.width, part.height), std::pair(300, 600));
    EXPECT_EQ(pixel(part, 0.5, 0.4), kRed);
    EXPECT_EQ(pixel(part, 0.5, 0.6), kWhite);

    const auto drawing =
        platform.drive.file("a.svg", documents::svg("<rect width='100' height='100' fill='#ff0000'/>"));
    const auto half =
        paint({.url = drawing, .width = 400, .height = 400, .part = Rect{0.25, 0, 0.5, 1}}).picture.value();
    EXPECT_EQ(std::pair(half.width, half.height), std::pair(200, 200));
    EXPECT_EQ(pixel(half, 0.4, 0.5), kRed);
    EXPECT_EQ(pixel(half, 0.6, 0.5), 0U);

    const auto moving = platform.drive.file("a.gif", documents::gif());
    for (const int index : {0, 1, 0}) {
        const auto frame =
            paint({.url = moving, .index = index, .width = 99, .height = 99, .part = {}}).picture.value();
        EXPECT_EQ(pixel(frame, 0, 0), index == 0 ? kRed : kBlue);
        EXPECT_EQ(std::pair(frame.width, frame.milliseconds), std::pair(2, index == 0 ? 200 : 500));
    }
}

TEST_F(DocumentDecoderTest, SaysWhyADocumentIsNotShown)
{
    using enum ContentProblem;
    const auto& drive = platform.drive;
    ASSERT_EQ(::mkfifo(drive.url("pipe.png").path().c_str(), 0600), 0);
    const std::string key(32, 'k');
    const auto locked = "/ID[<00><00>]/Encrypt<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" + key + ")>>";
    const std::pair<URL, ContentProblem> cases[] = {
        {drive.url("missing.png"), Gone},
        {drive.url("pipe.png"), NotReadable},
        {drive.folder("folder.png"), NotReadable},
        {drive.file("empty.png"), Empty},
        {drive.file("cut.pdf", documents::pdf().substr(0, 120)), Damaged},
        {drive.file("cut.svg", documents::svg("<rect")), Damaged},
        {drive.file("locked.pdf", documents::pdf(1, locked)), Encrypted},
    };
    for (const auto& [url, problem] : cases) {
        EXPECT_EQ(inspected(url).problem, problem) << url.path();
        EXPECT_EQ(paint(url, 64, 64).problem, problem) << url.path();
    }
    EXPECT_EQ(paint(drive.file("a.txt", "Hello"), 64, 64).problem, NotReadable);
    EXPECT_EQ(paint(drive.file("a.pdf", documents::pdf()), 20'000, 20'000).problem, TooLarge);
}

TEST_F(DocumentDecoderTest, ReadsInAProcessThatCanDoNothingElse)
{
    EXPECT_TRUE(paint(platform.drive.file("a.svg", documents::svg("<g/>")), 64, 64).picture);
    std::string status;
    for (const auto child : children())
        status += contentOf("/proc/" + std::to_string(child) + "/status");
    EXPECT_THAT(status, HasSubstr("Name:\ttesseldrive-dec"));
    EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1"));
    EXPECT_THAT(status, HasSubstr("Seccomp:\t2"));
}

// The document is saved, and the one that was open is not what is painted.
TEST_F(DocumentDecoderTest, PaintsADocumentAsItIsNow)
{
    const auto drawing = [](const std::string& color) {
        return documents::svg("<rect width='200' height='100' fill='" + color + "'/>");
    };
    const auto url = platform.drive.file("a.svg", drawing("#ff0000"));
    EXPECT_EQ(pixel(paint(url, 64, 64).picture.value(), 0.5, 0.5), kRed);
    platform.drive.file("a.svg", drawing("#0000ff"));
    EXPECT_EQ(pixel(paint(url, 64, 64).picture.value(), 0.5, 0.5), kBlue);
}

} // namespace
} // namespace tessel
