#pragma once

#include <QVariantList>

#include <memory>

namespace tessel {
class DocumentListController;
class URL;
class View;
} // namespace tessel

namespace tessel::qt {

/// The code of a peek, which is no action of the list's delegate.
inline constexpr int kPeekCode = -1;

/// What a menu of one of the list's items shows: a peek, then the actions.
[[nodiscard]] QVariantList menuOf(const DocumentListController&);

/// The actions that a list offers now, for a menu in QML: maps of `code`, `title`, `symbol` and `destructive`.
[[nodiscard]] QVariantList actionsOf(const DocumentListController&);

/// Does what an entry of such a menu stands for. @param row stands for the item's row
void performEntry(const std::shared_ptr<DocumentListController>&, int code, const URL& item,
                  const std::shared_ptr<View>& row);

} // namespace tessel::qt
