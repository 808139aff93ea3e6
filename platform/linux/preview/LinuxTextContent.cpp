#include "platform/linux/preview/LinuxTextContent.h"

#include "platform/run/MainQueue.h"

#include <chrono>
#include <utility>

namespace tessel {

namespace {

constexpr auto kBetweenNews = std::chrono::milliseconds(50);

} // namespace

LinuxTextContent::LinuxTextContent(Beginning beginning, const TextQueues& queues)
    : queues_(queues), file_(std::move(beginning.file)), firstRows_(std::move(beginning.rows)),
      extent_(beginning.extent)
{
}

void LinuxTextContent::findRows()
{
    if (extent_.isComplete)
        return;
    queues_.finding.async([self = weak_from_this(), file = file_, isWanted = isWanted_, &main = queues_.mainQueue] {
        auto told = std::chrono::steady_clock::now();
        for (TextFile::Extent extent; *isWanted && !extent.isComplete;) {
            extent = file->findMore();
            const auto now = std::chrono::steady_clock::now();
            if (!extent.isComplete && now - told < kBetweenNews)
                continue;
            told = now;
            main.async([self, extent] {
                const auto content = self.lock();
                if (!content)
                    return;
                content->extent_ = extent;
                if (const auto tell = content->grew)
                    tell();
            });
        }
    });
}

std::optional<std::uint64_t> LinuxTextContent::lineCount() const
{
    return extent_.isComplete && extent_.isWhole ? std::optional(extent_.lines) : std::nullopt;
}

void LinuxTextContent::readBlock(std::size_t block, RowsHandler handler)
{
    queues_.reading.async([self = weak_from_this(), file = file_, isWanted = isWanted_, &main = queues_.mainQueue,
                           block, handler = std::move(handler)] {
        if (!*isWanted)
            return;
        main.async([self, handler, rows = file->readBlock(block)] {
            if (self.lock())
                handler(rows);
        });
    });
}

} // namespace tessel
