#pragma once

#include "platform/documents/ListRow.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration>

namespace tessel::qt {

/// One row of a list as QML shows it: a copy of what is known at this moment, all texts in the user's language and fit
/// for display. A row that is not there any more is empty.
class RowValue {
    Q_GADGET
    QML_VALUE_TYPE(rowValue)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString kind MEMBER kind)
    Q_PROPERTY(QString iconSource MEMBER iconSource)
    Q_PROPERTY(QString thumbnailSource MEMBER thumbnailSource)
    Q_PROPERTY(QVariantList tags MEMBER tags)
    Q_PROPERTY(bool inCloud MEMBER inCloud)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(bool selected MEMBER selected)
    Q_PROPERTY(bool enabled MEMBER enabled)
    Q_PROPERTY(bool opensList MEMBER opensList)
    Q_PROPERTY(QString accessibleName MEMBER accessibleName)

public:
    QString title;
    QString subtitle; ///< what the item's size or count is, and its date; of search results where it lies
    QString kind;     ///< "file", "folder", "package", "link" or "library"; empty for a row that is not there
    QString iconSource;
    QString thumbnailSource; ///< empty when there can be none
    QVariantList tags;       ///< maps of `name` and `color`, transparent without one
    bool inCloud = false;
    double progress = -1; ///< of a download, from 0 to 1; negative when there is none
    bool selected = false;
    bool enabled = true;
    bool opensList = false;
    QString accessibleName; ///< all that the row says, in words

    friend bool operator==(const RowValue&, const RowValue&) = default;
};

/// The row of a folder list.
[[nodiscard]] RowValue folderRowValue(const ListRow&);
/// The row of a search result: its subtitle is the path from the drive's top folder, or from the library.
[[nodiscard]] RowValue searchRowValue(const ListRow&);

} // namespace tessel::qt
