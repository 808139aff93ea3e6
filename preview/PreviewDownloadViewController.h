#pragma once

#include "platform/base/URL.h"
#include "preview/PreviewDetailsViewController.h"

#include <memory>
#include <optional>

namespace tessel {

class PieProgressIndicatorView;

/// The details of a document that is not on the device: while it comes there, a pie over its thumbnail shows how far
/// that is. One download after the other, such as after the user has cancelled one. Main thread only.
class PreviewDownloadViewController final : public PreviewDetailsViewController {
public:
    /// The details of an item: of this kind unless its document is on the device.
    [[nodiscard]] static std::shared_ptr<PreviewDetailsViewController> detailsViewControllerForItem(const DRItem&);

    std::shared_ptr<PieProgressIndicatorView> progressView; ///< hidden while nothing is known to be under way

    void refreshItem() override;
    void updateProgress(const std::shared_ptr<Progress>&) override;

protected:
    void viewDidLoad() override;
    void viewWillAppear(Animated) override;
    void viewWillDisappear(Animated) override;
    void progressWasWithdrawn(Progress&) override;

private:
    void followDownload();

    bool isOnScreen_ = false;
    std::optional<URL> followedURL_; ///< whose progress is listened to
};

} // namespace tessel
