#include "preview/ThumbnailImageView.h"

#include "files/DRItem.h"
#include "platform/base/Platform.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/documents/DocumentIcon.h"
#include "platform/files/TypeRegistry.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tessel {

namespace {

constexpr double kWideMargin = 45;
constexpr double kNarrowMargin = 17;
constexpr double kLargestScale = 8;
constexpr double kIconScale = 2;
constexpr Size kIconSize{64, 64};
const Border kBorder{1, Color::gray(0, 0.16)};

bool isNothing(double length)
{
    return std::abs(length) <= static_cast<double>(std::numeric_limits<float>::epsilon());
}

} // namespace

ThumbnailImageView::ThumbnailImageView() : thumbnailView_(std::make_shared<ImageView>())
{
    thumbnailView_->setMagnification(Magnification::NearestNeighbour);
    addSubview(thumbnailView_);
}

void ThumbnailImageView::setItem(std::shared_ptr<DRItem> item)
{
    item_ = std::move(item);
    if (!item_)
        return;
    const auto& thumbnail = item_->thumbnail();
    const auto& shown = thumbnailView_->image();
    if (!thumbnail || !shown || shown->url() != thumbnail)
        showGenericImage();
    if (thumbnail)
        askForSize(*thumbnail);
}

ThumbnailImageView::~ThumbnailImageView()
{
    if (const auto* services = platform::installedIfAny())
        services->decoder.cancel(ticket_);
}

/// The picture is shown once its size is known, in place of the icon; the same one stays meanwhile.
void ThumbnailImageView::askForSize(const URL& thumbnail)
{
    auto& decoder = platform::installed().decoder;
    decoder.cancel(ticket_);
    ticket_ = decoder.inspect(thumbnail, [this, thumbnail, item = std::weak_ptr(item_)](const ContentFacts& facts) {
        if (item.lock() != item_)
            return;
        if (facts.problem || isNothing(facts.size.height))
            return showGenericImage();
        isGenericImage_ = false;
        _setThumbnailImage(Image::file(thumbnail, facts.size), true);
    });
}

void ThumbnailImageView::showGenericImage()
{
    isGenericImage_ = true;
    const auto& url = item_->resolvedURL();
    _setThumbnailImage(documentIcon(url ? url->lastPathComponent() : std::string_view(),
                                    item_->typeIdentifier().value_or(std::string(TypeIdentifier::kData)), kIconSize),
                       false);
}

void ThumbnailImageView::_setThumbnailImage(std::optional<Image> image, bool wantsBorder)
{
    thumbnailView_->setImage(std::move(image));
    thumbnailView_->setBorder({wantsBorder ? kBorder.width : 0, kBorder.color});
    setNeedsLayout();
}

double ThumbnailImageView::margins()
{
    const auto& device = platform::installed().device;
    const bool isRoomy =
        device.horizontalSizeClass() == SizeClass::Regular && device.verticalSizeClass() == SizeClass::Regular;
    return isRoomy ? kWideMargin : kNarrowMargin;
}

Rect ThumbnailImageView::aspectFitImage(const Size& image, const Rect& inRect, double withMargins) const
{
    const Size room{inRect.width - 2 * withMargins, inRect.height - 2 * withMargins};
    double scale = 0;
    if (!isNothing(image.width) && !isNothing(image.height))
        scale = std::min({room.width / image.width, room.height / image.height, kLargestScale});
    if (isGenericImage_)
        scale = kIconScale;
    const Size fitted{image.width * scale, image.height * scale};
    return {inRect.x + (inRect.width - fitted.width) / 2, inRect.y + (inRect.height - fitted.height) / 2, fitted.width,
            fitted.height};
}

void ThumbnailImageView::layoutSubviews()
{
    const auto& image = thumbnailView_->image();
    thumbnailView_->setFrame(aspectFitImage(image ? image->size() : Size{}, frame(), margins()));
}

} // namespace tessel
