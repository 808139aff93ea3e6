#include "preview/PreviewDownloadViewController.h"

#include "files/DRItem.h"
#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"
#include "preview/PieProgressIndicatorView.h"
#include "preview/ThumbnailImageView.h"

namespace tessel {

namespace {

constexpr double kPieSize = 64; ///< points

} // namespace

std::shared_ptr<PreviewDetailsViewController> PreviewDownloadViewController::detailsViewControllerForItem(
    const DRItem& item)
{
    if (item.isDownloaded())
        return std::make_shared<PreviewDetailsViewController>();
    return std::make_shared<PreviewDownloadViewController>();
}

void PreviewDownloadViewController::viewDidLoad()
{
    PreviewDetailsViewController::viewDidLoad();
    progressView = std::make_shared<PieProgressIndicatorView>();
    progressView->setLaidOutByConstraints(true);
    progressView->setHidden(true);
    progressView->setAccessibilityLabel(platform::installed().text.localized("Downloading"));
    wrapperView->addSubview(progressView);
    LayoutConstraint::activate({progressView->centerXAnchor().equalTo(thumbnailView->centerXAnchor()),
                                progressView->centerYAnchor().equalTo(thumbnailView->centerYAnchor()),
                                progressView->widthAnchor().equalTo(kPieSize),
                                progressView->heightAnchor().equalTo(kPieSize)});
}

void PreviewDownloadViewController::viewWillAppear(Animated animated)
{
    isOnScreen_ = true;
    PreviewDetailsViewController::viewWillAppear(animated);
}

void PreviewDownloadViewController::viewWillDisappear(Animated animated)
{
    isOnScreen_ = false;
    PreviewDetailsViewController::viewWillDisappear(animated);
    progressView->setHidden(true);
}

/// The item may be somewhere else now.
void PreviewDownloadViewController::refreshItem()
{
    PreviewDetailsViewController::refreshItem();
    followDownload();
}

void PreviewDownloadViewController::followDownload()
{
    static const std::optional<URL> kNowhere;
    const auto item = this->item();
    const auto& url = item ? item->resolvedURL() : kNowhere;
    if (!isOnScreen_ || (subscriber && url == followedURL_))
        return;
    followedURL_ = url;
    unregisterProgress();
    registerForProgress();
}

void PreviewDownloadViewController::updateProgress(const std::shared_ptr<Progress>& progress)
{
    progressView->setProgress(static_cast<float>(progress->fractionCompleted()));
    progressView->setHidden(progress->isCancelled());
}

/// That has ended the subscription; the next download is to be seen too.
void PreviewDownloadViewController::progressWasWithdrawn(Progress& progress)
{
    PreviewDetailsViewController::progressWasWithdrawn(progress);
    progressView->setHidden(true);
    DispatchQueue::main().async([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            static_cast<PreviewDownloadViewController&>(*self).followDownload();
    });
}

} // namespace tessel
