#pragma once

#include "platform/files/FolderTable.h"
#include "platform/qt/lists/RowValue.h"

#include <QAbstractListModel>

#include <cstddef>
#include <memory>
#include <optional>

namespace tessel {
class View;
} // namespace tessel

namespace tessel::qt {

/// A list of rows that are read from somewhere else when a view asks for them; it holds no rows itself, only how many
/// of them the views have been told of. While a change is being told, range by range, every row that is still there
/// keeps its content.
class RowListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    static constexpr int kRowRole = Qt::UserRole;

    /// The rows that the views know of.
    [[nodiscard]] int count() const { return count_; }
    /// What one row shows; an empty value for a row that is not there.
    [[nodiscard]] RowValue row(int index) const;
    /// The row, to be followed while others come and go: its `row` is -1 when it has gone. Use it wherever something is
    /// done to a row later than it was pointed at.
    [[nodiscard]] Q_INVOKABLE QPersistentModelIndex track(int row) const;

    /// Stands for the row where something is done to it, for a sheet to point at. It lives until the next one.
    [[nodiscard]] std::shared_ptr<View> viewOfRow(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex&, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

protected:
    using QAbstractListModel::QAbstractListModel;

    /// How many rows there are, told or not.
    [[nodiscard]] virtual std::size_t rowsNow() const = 0;
    /// @param index below `rowsNow`
    [[nodiscard]] virtual RowValue rowNow(std::size_t index) const = 0;

    /// Tells the views of a change that has happened. A change that happens while another one is being told, or one
    /// that does not lead to `rowsNow`, is told as a reset.
    void announce(const RowChanges&);
    /// The row as it is called now, for one that the views point at; none when it is gone.
    [[nodiscard]] std::optional<std::size_t> indexNow(int told) const;

private:
    void announceReset();
    void announceRemoved();
    void announceInserted();
    void announceUpdated(const std::vector<std::size_t>& updated);
    [[nodiscard]] std::size_t insertedBefore(std::size_t place) const;
    [[nodiscard]] bool leadsToNow(const RowChanges&) const;

    std::shared_ptr<View> rowView_;
    int count_ = 0;
    bool announcing_ = false;
    bool changedMeanwhile_ = false;
    std::vector<std::size_t> stillToRemove_; ///< of the change being told: indices before it
    std::vector<std::size_t> stillToInsert_; ///< in the same way: indices after it, the last one first
};

} // namespace tessel::qt
