#include "platform/linux/preview/TextFile.h"

#include "platform/linux/files/Uninterrupted.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace tessel {

namespace {

constexpr std::size_t kPart = std::size_t{1} << 20U;
constexpr std::size_t kReadAtOnce = std::size_t{64} * 1024;
constexpr std::size_t kMostRows = 1'000'000'000; ///< their blocks take 32 MB, and a list has room for them

} // namespace

TextFile::TextFile(FileDescriptor file, std::uint64_t size, const TextEncoding& encoding)
    : file_(std::move(file)), size_(size), finding_(encoding), reading_(encoding), offset_(encoding.markLength)
{
}

TextFile::Extent TextFile::findMore()
{
    const auto bytes = readAt(offset_, kPart);
    const bool isEnd = bytes.size() < kPart;
    const auto found = addRows(bytes, isEnd);
    extent_.isWhole = isEnd && found == bytes.size();
    extent_.isComplete = isEnd || found == 0 || extent_.rows >= kMostRows;
    return extent_;
}

std::size_t TextFile::addRows(std::string_view bytes, bool isEnd)
{
    const std::lock_guard lock(mutex_);
    std::size_t found = 0;
    while (extent_.rows < kMostRows) {
        const auto row = finding_.next(bytes.substr(found), isEnd);
        if (row.whole == 0)
            break;
        if (extent_.rows % TextContent::kBlockRows == 0)
            blocks_.push_back(offset_);
        ++extent_.rows;
        extent_.lines += row.endsLine ? 1 : 0;
        offset_ += row.whole;
        found += row.whole;
    }
    return found;
}

TextContent::Rows TextFile::readBlock(std::size_t block) const
{
    TextContent::Rows rows;
    auto offset = startOfBlock(block);
    while (offset && rows.size() < TextContent::kBlockRows) {
        const auto bytes = readAt(*offset, kReadAtOnce);
        const bool isEnd = bytes.size() < kReadAtOnce;
        std::size_t taken = 0;
        while (rows.size() < TextContent::kBlockRows) {
            const auto rest = std::string_view(bytes).substr(taken);
            const auto row = reading_.next(rest, isEnd);
            if (row.whole == 0)
                break;
            rows.push_back(reading_.shown(rest.substr(0, row.length)));
            taken += row.whole;
        }
        if (isEnd || taken == 0)
            break;
        *offset += taken;
    }
    return rows;
}

std::optional<std::uint64_t> TextFile::startOfBlock(std::size_t block) const
{
    const std::lock_guard lock(mutex_);
    return block < blocks_.size() ? std::optional(blocks_[block]) : std::nullopt;
}

std::string TextFile::readAt(std::uint64_t offset, std::size_t most) const
{
    std::string bytes(offset < size_ ? static_cast<std::size_t>(std::min<std::uint64_t>(most, size_ - offset)) : 0, 0);
    std::size_t read = 0;
    while (read < bytes.size()) {
        const auto count = uninterrupted([&] {
            return ::pread(file_.get(), bytes.data() + read, bytes.size() - read, static_cast<off_t>(offset + read));
        });
        if (count <= 0)
            break;
        read += static_cast<std::size_t>(count);
    }
    bytes.resize(read);
    return bytes;
}

} // namespace tessel
