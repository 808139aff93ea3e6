#pragma once

#include "browser/DriveStatusLabelView.h"
#include "platform/ui/NavigationItem.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class DocumentListControllerStatusBarDelegate {
public:
    virtual ~DocumentListControllerStatusBarDelegate() = default;

    /// The offer's button was pressed, and leads into the program's own upgrade flow.
    virtual void upgradeStorageButtonPressed() = 0;
};

/// The status at the bottom of one folder list, in its toolbar. Made as a shared pointer; main thread only.
class DocumentListControllerStatusBar : public std::enable_shared_from_this<DocumentListControllerStatusBar> {
public:
    std::shared_ptr<DriveStatusLabelView> labelsView;
    std::weak_ptr<DocumentListControllerStatusBarDelegate> delegate;
    BarButtonItems toolbarItems; ///< the labels between two flexible spaces

    /// Makes the views; the first thing to be done with a status bar.
    void createStatusBar(const std::optional<StorageOffer>&,
                         const std::shared_ptr<DocumentListControllerStatusBarDelegate>& buttonPressDelegate);

    void setStatusText(const std::string&);
    /// Shows the button of an offer that wants one; without an offer, none.
    void showUpgradeOffer(const std::optional<StorageOffer>&);

private:
    void configureLabels(const std::optional<StorageOffer>&);
    void showLowQuotaFor(const std::optional<StorageOffer>&);
    void upgradeStoragePressed(const UpgradeButton&);
};

} // namespace tessel
