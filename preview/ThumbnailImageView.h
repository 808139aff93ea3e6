#pragma once

#include "platform/ui/ImageView.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tessel {

class DRItem;

/// Shows a document's thumbnail in its middle, as large as it fits between margins; without one, and until that is
/// known, its type's icon.
class ThumbnailImageView : public View {
public:
    ThumbnailImageView();
    ~ThumbnailImageView() override;

    [[nodiscard]] const std::shared_ptr<DRItem>& item() const { return item_; }
    /// Null leaves the picture as it is.
    void setItem(std::shared_ptr<DRItem>);
    [[nodiscard]] const std::shared_ptr<ImageView>& thumbnailView() const { return thumbnailView_; }
    /// Whether the type's icon is shown.
    [[nodiscard]] bool isGenericImage() const { return isGenericImage_; }

    /// Points on each side of a thumbnail.
    [[nodiscard]] static double margins();
    /// Where a picture of a size is shown in a rectangle: in its middle, at most eight times as large as it is; the
    /// type's icon twice as large, however much room there is.
    [[nodiscard]] Rect aspectFitImage(const Size&, const Rect& inRect, double withMargins) const;

protected:
    void layoutSubviews() override;
    void _setThumbnailImage(std::optional<Image>, bool wantsBorder);

private:
    void showGenericImage();
    void askForSize(const URL& thumbnail);

    std::shared_ptr<DRItem> item_;
    const std::shared_ptr<ImageView> thumbnailView_;
    bool isGenericImage_ = false;
    std::uint64_t ticket_ = 0; ///< of the question for the thumbnail's size
};

} // namespace tessel
