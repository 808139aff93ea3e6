#pragma once

#include "platform/qt/lists/RowListModel.h"

#include <QVariantList>

#include <memory>
#include <vector>

namespace tessel {
class DocumentListController;
class SearchController;
} // namespace tessel

namespace tessel::qt {

/// The results of a search, for QML. Follows the controller as long as that exists.
class SearchList final : public RowListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(SearchList)
    QML_UNCREATABLE("Lists are made by the shell.")
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    /// @param list whose folder is searched, and whose actions can be done with the results
    SearchList(const std::shared_ptr<SearchController>&, const std::shared_ptr<DocumentListController>& list,
               QObject* parent = nullptr);
    ~SearchList() override;

    /// Whether more results may come.
    [[nodiscard]] bool busy() const { return busy_; }
    [[nodiscard]] std::shared_ptr<SearchController> controller() const { return controller_.lock(); }

    Q_INVOKABLE void press(int row);
    /// Maps of `code`, `title`, `symbol` and `destructive`, in the order of a menu.
    [[nodiscard]] Q_INVOKABLE QVariantList actions() const;
    /// The same for the menu of one item: with its peek.
    [[nodiscard]] Q_INVOKABLE QVariantList menu() const;
    Q_INVOKABLE void perform(int row, int code);
    [[nodiscard]] Q_INVOKABLE QString accessibleName(int row) const { return this->row(row).accessibleName; }

signals:
    void busyChanged();

protected:
    [[nodiscard]] std::size_t rowsNow() const override;
    [[nodiscard]] RowValue rowNow(std::size_t index) const override;

private:
    struct Listener;

    void follow();

    std::weak_ptr<SearchController> controller_;
    std::weak_ptr<DocumentListController> list_;
    std::vector<URL> told_; ///< which results the views know of
    bool busy_ = false;
};

} // namespace tessel::qt
