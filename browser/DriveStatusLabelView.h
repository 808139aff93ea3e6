#pragma once

#include "platform/documents/UpgradeButton.h"
#include "platform/ui/Label.h"

#include <memory>
#include <string>

namespace tessel {

/// What a list's toolbar shows: a line of text and, while the storage runs low, a button beneath it, both in the
/// middle. It has no size of its own, and so takes that of the bar. Main thread only.
class DriveStatusLabelView final : public View {
public:
    explicit DriveStatusLabelView(const Rect& frame) : View(frame) {}

    std::shared_ptr<Label> primaryLabel;        ///< made, and put into the view, by the status bar
    std::shared_ptr<UpgradeButton> quotaButton; ///< likewise

    void setPrimaryLabelText(const std::string&);
    [[nodiscard]] bool showLowQuota() const { return showLowQuota_; }
    void showLowQuota(bool);

private:
    void layoutSubviews() override;

    bool showLowQuota_ = false;
};

} // namespace tessel
