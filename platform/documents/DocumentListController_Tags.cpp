#include "platform/base/Platform.h"
#include "platform/cloud/KeyValueStore.h"
#include "platform/documents/DocumentListController_Listing.h"
#include "platform/documents/SearchController.h"

namespace tessel {

void DocumentListController::colorTags(ListRow& row) const
{
    const auto listener = delegate.lock();
    if (!listener || row.tags.empty())
        return;
    for (auto& tag : row.tags)
        tag.color = listener->documentListControllerColorOfTag(*this, tag.name);
    followTagColors();
}

/// Begun once the delegate has answered: what it follows itself it is told before the list.
void DocumentListController::followTagColors() const
{
    if (!listing_->tagColors.stands())
        listing_->tagColors = platform::installed().notifications.observe(
            kKeyValueStoreChangedNotification,
            [self = const_cast<DocumentListController*>(this)] { self->tagColorsChanged(); });
}

void DocumentListController::tagColorsChanged()
{
    RowChanges changes;
    changes.updated = listing_->rows.rowsWithTags();
    if (search_)
        search_->colorTags();
    if (rowsChanged && !changes.empty())
        rowsChanged(changes);
}

} // namespace tessel
