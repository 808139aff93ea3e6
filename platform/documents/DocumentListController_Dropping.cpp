#include "platform/documents/DocumentListController.h"

namespace tessel {

std::vector<URL> DocumentListController::itemsDraggedWith(std::size_t row) const
{
    if (row >= containedItemCount())
        return {};
    const auto dragged = this->row(row);
    if (dragged.kind == RowKind::Library)
        return {};
    return dragged.selected ? selectedItemURLs() : std::vector{dragged.url};
}

std::optional<URL> DocumentListController::folderForDrop(const std::vector<URL>& items,
                                                         std::optional<std::size_t> row) const
{
    const auto listener = delegate.lock();
    auto folder = presentedURL_;
    if (row && *row < containedItemCount()) {
        const auto target = this->row(*row);
        if (target.kind != RowKind::Folder && target.kind != RowKind::Library)
            return std::nullopt;
        folder = target.url;
    }
    const bool can = listener && !items.empty() && listener->documentListControllerCanMoveItems(*this, items, folder);
    return can ? std::optional(folder) : std::nullopt;
}

void DocumentListController::drop(const std::vector<URL>& items, const URL& folder)
{
    const auto self = shared_from_this();
    if (const auto listener = delegate.lock())
        listener->documentListControllerMoveItems(*this, items, folder);
}

} // namespace tessel
