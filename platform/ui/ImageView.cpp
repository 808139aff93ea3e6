#include "platform/ui/ImageView.h"

#include <utility>

namespace tessel {

void ImageView::setImage(std::optional<Image> image)
{
    if (assign(image_, std::move(image)))
        invalidateIntrinsicContentSize();
}

void ImageView::setMagnification(Magnification magnification)
{
    assign(magnification_, magnification);
}

Size ImageView::intrinsicContentSize() const
{
    return image_ ? image_->size() : View::intrinsicContentSize();
}

} // namespace tessel
