#pragma once

#include <QVariantList>

namespace tessel {
class DocumentListController;
}

namespace tessel::qt {

/// The actions that a list offers now, for a menu in QML: maps of `code`, `title`, `symbol` and `destructive`.
[[nodiscard]] QVariantList actionsOf(const DocumentListController&);

} // namespace tessel::qt
