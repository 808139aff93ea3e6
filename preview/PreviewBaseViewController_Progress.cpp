#include "app/common/Log.h"
#include "files/DRItem.h"
#include "preview/PreviewBaseViewController.h"
#include "preview/PreviewItemManager.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tessel {

namespace {

/// The twentieth in which a fraction lies, towards 0; of no fraction the first.
std::int32_t chunkOf(double fraction)
{
    constexpr double kChunks = 20;
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    return std::isnan(fraction) ? 0 : static_cast<std::int32_t>(std::clamp(fraction * kChunks, -kMost, kMost));
}

} // namespace

void PreviewBaseViewController::registerForProgress()
{
    const auto manager = itemManager.lock();
    const auto url = manager && manager->item() ? manager->item()->resolvedURL() : std::nullopt;
    if (!url)
        return;
    unregisterProgress();
    const auto self = std::static_pointer_cast<PreviewBaseViewController>(shared_from_this());
    subscriber = platform::installed().progress.addSubscriberForFileURL(
        *url, [self](const std::shared_ptr<Progress>& progress) { return self->progressWasPublished(progress); });
}

/// It is observed whatever it is.
ProgressService::WithdrawalHandler PreviewBaseViewController::progressWasPublished(
    const std::shared_ptr<Progress>& progress)
{
    TSD_FUNCTION("-[PreviewBaseViewController registerForProgress]_block_invoke");
    const auto self = std::static_pointer_cast<PreviewBaseViewController>(shared_from_this());
    progress->addObserver(self, kFractionCompletedKey);
    if (progress->kind() != kProgressKindFile)
        TSD_DEBUG("ignoring progress with different kind %{public}@, kind = %{public}@", progress, progress->kind());
    else if (progress->fractionCompleted() == 0)
        TSD_DEBUG("ignoring progress with no progress done yet %{public}@", progress);
    else
        TSD_DEBUG("got progress %{public}@", progress);
    return [self, progress] { self->progressWasWithdrawn(*progress); };
}

void PreviewBaseViewController::progressWasWithdrawn(Progress& progress)
{
    progress.removeObserver(*this, kFractionCompletedKey);
    unregisterProgress();
}

void PreviewBaseViewController::unregisterProgress()
{
    if (const auto ended = std::exchange(subscriber, nullptr))
        platform::installed().progress.removeSubscriber(ended);
}

void PreviewBaseViewController::observeValueForKeyPath(std::string_view keyPath,
                                                       const std::shared_ptr<Progress>& ofObject)
{
    TSD_FUNCTION("-[PreviewBaseViewController observeValueForKeyPath:ofObject:change:context:]");
    if (keyPath != kFractionCompletedKey || !ofObject)
        return ProgressObserver::observeValueForKeyPath(keyPath, ofObject);
    const auto fraction =
        static_cast<double>(ofObject->completedUnitCount()) / static_cast<double>(ofObject->totalUnitCount());
    if (const auto chunk = chunkOf(fraction); std::exchange(lastProgressChunk, chunk) != chunk)
        TSD_INFO("Progress %{public}@%%: %{public}@", fraction * 100, ofObject);
    else
        TSD_DEBUG("Progress %{public}@%%: %{public}@", fraction * 100, ofObject);
    updateProgress(ofObject);
}

} // namespace tessel
