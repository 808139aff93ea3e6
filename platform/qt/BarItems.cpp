#include "platform/qt/BarItems.h"

#include "platform/qt/BarItem.h"

namespace tessel::qt {

QVariantList BarItems::itemsFor(const BarButtonItems& entries)
{
    QVariantList items;
    for (const auto& entry : entries)
        items.append(QVariant::fromValue(itemFor(entry)));
    return items;
}

BarItem* BarItems::find(const std::shared_ptr<BarButtonItem>& entry) const
{
    const auto found = items_.find(entry.get());
    return found == items_.end() || found->second->isGone() ? nullptr : found->second;
}

BarItem* BarItems::itemFor(const std::shared_ptr<BarButtonItem>& entry)
{
    if (auto* const known = find(entry)) {
        known->sync();
        return known;
    }
    auto*& item = items_[entry.get()];
    if (item)
        item->deleteLater(); // of an entry that was at the same address
    return item = new BarItem(entry, views_.nodeFor(entry->customView()), this);
}

void BarItems::dropGone()
{
    std::erase_if(items_, [](const auto& entry) {
        if (!entry.second->isGone())
            return false;
        entry.second->deleteLater();
        return true;
    });
}

} // namespace tessel::qt
