#pragma once

#include "platform/qt/views/NodeTree.h"
#include "platform/ui/NavigationItem.h"

#include <QObject>
#include <QVariantList>

#include <unordered_map>

namespace tessel::qt {

class BarItem;

/// The entries of all bars: one entry may stand in the bars of several pages.
class BarItems final : public QObject {
    Q_OBJECT

public:
    BarItems(bool dark, QObject* parent) : QObject(parent), views_(dark) {}

    /// What QML shows for these entries, each as it is now. The same object for the same entry as long as that exists.
    [[nodiscard]] QVariantList itemsFor(const BarButtonItems&);
    /// Null for an entry that is in no bar.
    [[nodiscard]] BarItem* find(const std::shared_ptr<BarButtonItem>&) const;
    /// Lets go of those whose entry is gone.
    void dropGone();
    void setDark(bool dark) { views_.setDark(dark); }

private:
    [[nodiscard]] BarItem* itemFor(const std::shared_ptr<BarButtonItem>&);

    NodeTree views_; ///< the custom entries'
    std::unordered_map<const BarButtonItem*, BarItem*> items_;
};

} // namespace tessel::qt
