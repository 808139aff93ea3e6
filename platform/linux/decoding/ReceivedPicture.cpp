#include "platform/linux/decoding/ReceivedPicture.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>

namespace tessel {

namespace {

constexpr double kLongestSide = 1'000'000;
constexpr int kMostPages = 10'000'000;

bool isSealed(const FileDescriptor& file)
{
    constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_WRITE;
    const int seals = ::fcntl(file.get(), F_GET_SEALS);
    return seals >= 0 && (seals & kSeals) == kSeals;
}

bool holds(const FileDescriptor& file, std::size_t bytes)
{
    struct stat status = {};
    return ::fstat(file.get(), &status) == 0 && status.st_size >= 0 &&
           static_cast<std::uint64_t>(status.st_size) >= bytes;
}

double possible(double length)
{
    return std::isfinite(length) ? std::clamp(length, 0.0, kLongestSide) : 0;
}

} // namespace

std::optional<ContentPicture> receivedPicture(const DecoderAnswer& answer, const FileDescriptor& file)
{
    constexpr std::size_t kBytesPerPixel = 4;
    if (answer.width <= 0 || answer.height <= 0 ||
        static_cast<std::int64_t>(answer.width) * answer.height > kMostPaintedPixels)
        return std::nullopt;
    const auto stride = static_cast<std::size_t>(answer.width) * kBytesPerPixel;
    const auto bytes = stride * static_cast<std::size_t>(answer.height);
    if (!isSealed(file) || !holds(file, bytes))
        return std::nullopt;
    void* const pixels = ::mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (pixels == MAP_FAILED)
        return std::nullopt;
    ContentPicture picture;
    picture.pixels = {static_cast<const std::byte*>(pixels),
                      [pixels, bytes](const std::byte*) { ::munmap(pixels, bytes); }};
    picture.width = answer.width;
    picture.height = answer.height;
    picture.stride = static_cast<std::ptrdiff_t>(stride);
    picture.milliseconds = std::max(answer.milliseconds, 0);
    picture.isOpaque = answer.isOpaque == 1;
    return picture;
}

ContentFacts receivedFacts(const DecoderAnswer& answer)
{
    ContentFacts facts;
    facts.kind = answer.kind > ContentKind::Video || answer.kind < ContentKind::None ? ContentKind::None : answer.kind;
    facts.problem = receivedProblem(answer);
    facts.size = {possible(answer.size.width), possible(answer.size.height)};
    facts.count = std::clamp(answer.count, 0, kMostPages);
    return facts;
}

std::optional<ContentProblem> receivedProblem(const DecoderAnswer& answer)
{
    if (answer.problem < 1 || answer.problem > static_cast<std::int32_t>(ContentProblem::NotPlayable) + 1)
        return std::nullopt;
    return static_cast<ContentProblem>(answer.problem - 1);
}

} // namespace tessel
