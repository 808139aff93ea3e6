#pragma once

#include "platform/qt/lists/RowListModel.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include <vector>

namespace tessel::qt {

/// Keeps a copy of a list by nothing but what it is told, as a view does, and checks after every step that each row of
/// the copy is what the list now answers for it.
class ListWatcher final : public QObject {
public:
    explicit ListWatcher(RowListModel& list) : list_(list), tester_(&list, Mode::Fatal)
    {
        readAll();
        connect(&list, &RowListModel::modelReset, this, [this] {
            resets++;
            readAll();
        });
        connect(&list, &RowListModel::rowsRemoved, this, [this](const QModelIndex&, int first, int last) {
            rows.erase(rows.begin() + first, rows.begin() + last + 1);
            check();
        });
        connect(&list, &RowListModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
            for (int row = first; row <= last; ++row)
                rows.insert(rows.begin() + row, list_.row(row));
            insertedRuns++;
            check();
        });
        connect(&list, &RowListModel::dataChanged, this, [this](const QModelIndex& first, const QModelIndex& last) {
            for (int row = first.row(); row <= last.row(); ++row)
                rows[static_cast<std::size_t>(row)] = list_.row(row);
            updatedRows += last.row() - first.row() + 1;
        });
    }

    std::vector<RowValue> rows;
    int resets = 0;
    int insertedRuns = 0;
    int updatedRows = 0;

private:
    using Mode = QAbstractItemModelTester::FailureReportingMode;

    void readAll()
    {
        rows.clear();
        for (int row = 0; row < list_.count(); ++row)
            rows.push_back(list_.row(row));
    }

    /// By title: that a row shows something else is told at the end. A row that is about to be removed is empty.
    void check() const
    {
        ASSERT_EQ(static_cast<int>(rows.size()), list_.count());
        for (int row = 0; row < list_.count(); ++row) {
            const auto title = list_.row(row).title;
            ASSERT_TRUE(title.isEmpty() || title == rows[static_cast<std::size_t>(row)].title) << "row " << row;
        }
    }

    const RowListModel& list_;
    QAbstractItemModelTester tester_;
};

} // namespace tessel::qt
