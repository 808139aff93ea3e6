#include "platform/qt/lists/RowListModel.h"

#include "platform/qt/lists/RowView.h"

#include <algorithm>
#include <utility>

namespace tessel::qt {

namespace {

/// The consecutive indices at the end of ascending or descending ones: their lowest and highest.
std::pair<int, int> lastRun(const std::vector<std::size_t>& indices)
{
    auto run = indices.rbegin();
    while (std::next(run) != indices.rend() && (*std::next(run) + 1 == *run || *run + 1 == *std::next(run)))
        ++run;
    const auto [low, high] = std::minmax(*run, indices.back());
    return {static_cast<int>(low), static_cast<int>(high)};
}

void dropLastRun(std::vector<std::size_t>& indices, std::pair<int, int> run)
{
    indices.resize(indices.size() - static_cast<std::size_t>(run.second - run.first + 1));
}

} // namespace

RowValue RowListModel::row(int index) const
{
    const auto now = indexNow(index);
    return now ? rowNow(*now) : RowValue();
}

QPersistentModelIndex RowListModel::track(int row) const
{
    return index(row);
}

std::shared_ptr<View> RowListModel::viewOfRow(int row)
{
    rowView_ = std::make_shared<RowView>(track(row));
    return rowView_;
}

int RowListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count_;
}

QVariant RowListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != kRowRole)
        return {};
    return QVariant::fromValue(row(index.row()));
}

QHash<int, QByteArray> RowListModel::roleNames() const
{
    return {{kRowRole, "row"}};
}

/// The row's place among those that stay through the change, and from that its place now.
std::optional<std::size_t> RowListModel::indexNow(int told) const
{
    const auto before = static_cast<std::size_t>(told);
    if (told < 0 || told >= count_ || std::binary_search(stillToRemove_.begin(), stillToRemove_.end(), before))
        return std::nullopt;
    const auto removed = std::lower_bound(stillToRemove_.begin(), stillToRemove_.end(), before);
    const auto place = before - static_cast<std::size_t>(removed - stillToRemove_.begin());
    const auto now = place + insertedBefore(place);
    return now < rowsNow() ? std::optional(now) : std::nullopt;
}

/// How many of the rows that are still to be inserted come before the one of this place among those that stay. The n-th
/// of them has its own index less n such rows before it.
std::size_t RowListModel::insertedBefore(std::size_t place) const
{
    std::size_t low = 0;
    for (auto high = stillToInsert_.size(); low < high;) {
        const auto middle = low + (high - low) / 2;
        if (stillToInsert_.rbegin()[static_cast<std::ptrdiff_t>(middle)] - middle <= place)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

bool RowListModel::leadsToNow(const RowChanges& changes) const
{
    const auto before = static_cast<std::size_t>(count_);
    return !changes.reset && changes.removed.size() <= before &&
           before - changes.removed.size() + changes.inserted.size() == rowsNow();
}

void RowListModel::announce(const RowChanges& changes)
{
    if (std::exchange(announcing_, true)) {
        changedMeanwhile_ = true;
        return;
    }
    if (leadsToNow(changes)) {
        stillToRemove_ = changes.removed;
        stillToInsert_.assign(changes.inserted.rbegin(), changes.inserted.rend());
        announceRemoved();
        announceInserted();
        announceUpdated(changes.updated);
    } else {
        announceReset();
    }
    while (std::exchange(changedMeanwhile_, false))
        announceReset();
    announcing_ = false;
}

void RowListModel::announceReset()
{
    beginResetModel();
    stillToRemove_.clear();
    stillToInsert_.clear();
    const auto before = std::exchange(count_, static_cast<int>(rowsNow()));
    endResetModel();
    if (before != count_)
        emit countChanged();
}

/// From the last run to the first, so that the indices of those before stay true.
void RowListModel::announceRemoved()
{
    const bool any = !stillToRemove_.empty();
    while (!stillToRemove_.empty() && !changedMeanwhile_) {
        const auto run = lastRun(stillToRemove_);
        beginRemoveRows({}, run.first, run.second);
        dropLastRun(stillToRemove_, run);
        count_ -= run.second - run.first + 1;
        endRemoveRows();
    }
    if (any)
        emit countChanged();
}

/// From the first run to the last.
void RowListModel::announceInserted()
{
    const bool any = !stillToInsert_.empty();
    while (!stillToInsert_.empty() && !changedMeanwhile_) {
        const auto run = lastRun(stillToInsert_);
        beginInsertRows({}, run.first, run.second);
        dropLastRun(stillToInsert_, run);
        count_ += run.second - run.first + 1;
        endInsertRows();
    }
    if (any)
        emit countChanged();
}

void RowListModel::announceUpdated(const std::vector<std::size_t>& updated)
{
    std::vector<std::size_t> rest(updated.rbegin(), updated.rend());
    while (!rest.empty() && !changedMeanwhile_) {
        const auto run = lastRun(rest);
        dropLastRun(rest, run);
        emit dataChanged(index(run.first), index(run.second), {kRowRole});
    }
}

} // namespace tessel::qt
