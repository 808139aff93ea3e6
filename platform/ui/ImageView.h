#pragma once

#include "platform/ui/Image.h"
#include "platform/ui/View.h"

namespace tessel {

enum class Magnification { Smooth, NearestNeighbour };

/// Shows an image, stretched to its frame.
class ImageView : public View {
public:
    [[nodiscard]] const std::optional<Image>& image() const { return image_; }
    void setImage(std::optional<Image>);
    [[nodiscard]] Magnification magnification() const { return magnification_; }
    void setMagnification(Magnification);

    [[nodiscard]] Size intrinsicContentSize() const override;

private:
    std::optional<Image> image_;
    Magnification magnification_ = Magnification::Smooth;
};

} // namespace tessel
