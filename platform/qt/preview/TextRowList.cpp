#include "platform/qt/preview/TextRowList.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace tessel::qt {

namespace {

constexpr int kKeptBytes = 8 * 1024 * 1024;
constexpr int kTextRole = Qt::UserRole;

} // namespace

TextRowList::TextRowList(QObject* parent) : QAbstractListModel(parent), blocks_(kKeptBytes), before_(kKeptBytes)
{
}

void TextRowList::show(const std::shared_ptr<TextContent>& text, bool isSameDocument)
{
    requested_.clear();
    before_.clear();
    if (isSameDocument)
        for (const auto block : blocks_.keys())
            before_.insert(block, blocks_.take(block), kKeptBytes / 64);
    blocks_.clear();
    text_ = text;
    if (!isSameDocument) {
        beginResetModel();
        base_ = total_ = count_ = 0;
        endResetModel();
    }
    if (!text_)
        return;
    keep(0, text_->firstRows());
    found_ = 0;
    follow();
}

/// Rows are taken away only when it is certain that there are fewer of them.
void TextRowList::follow()
{
    if (!text_)
        return;
    const auto found = static_cast<int>(text_->rowCount());
    const auto total = text_->isComplete() ? found : std::max(total_, found);
    const bool isNew = std::exchange(found_, found) != found;
    if (std::exchange(total_, total) != total) {
        resize();
        emit windowChanged();
    }
    if (isNew && count_ > 0)
        emit dataChanged(index(0), index(count_ - 1), {kTextRole}); // what was not found before can be read now
}

void TextRowList::resize()
{
    base_ = std::max(0, std::min(base_, total_ - kWindow));
    const auto count = roomFor(total_);
    if (count > count_) {
        beginInsertRows({}, count_, count - 1);
        count_ = count;
        endInsertRows();
    } else if (count < count_) {
        beginRemoveRows({}, count, count_ - 1);
        count_ = count;
        endRemoveRows();
    }
}

int TextRowList::reach(int row)
{
    const auto wanted = std::clamp(row, 0, std::max(0, total_ - 1));
    const auto base = std::clamp(wanted - kWindow / 2, 0, std::max(0, total_ - kWindow));
    if (base != base_) {
        beginResetModel();
        base_ = base;
        count_ = roomFor(total_);
        endResetModel();
        emit windowChanged();
    }
    return wanted - base_;
}

int TextRowList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count_;
}

QVariant TextRowList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != kTextRole || index.row() >= count_ || !text_)
        return {};
    const auto row = static_cast<std::size_t>(base_) + static_cast<std::size_t>(index.row());
    const auto* known = find(blocks_, row);
    if (!known) {
        request(row / TextContent::kBlockRows);
        known = find(before_, row);
    }
    return known ? QString::fromStdString(*known) : QString();
}

QHash<int, QByteArray> TextRowList::roleNames() const
{
    return {{kTextRole, "line"}};
}

const std::string* TextRowList::find(const Blocks& blocks, std::size_t row) const
{
    const auto* const rows = blocks.object(row / TextContent::kBlockRows);
    const auto place = row % TextContent::kBlockRows;
    return rows && place < rows->size() ? &(*rows)[place] : nullptr;
}

void TextRowList::keep(std::size_t block, const TextContent::Rows& rows)
{
    std::size_t bytes = 1;
    for (const auto& row : rows)
        bytes += row.size() + sizeof row;
    blocks_.insert(block, new TextContent::Rows(rows), static_cast<int>(bytes));
}

void TextRowList::request(std::size_t block) const
{
    const bool isFound = block * TextContent::kBlockRows < static_cast<std::size_t>(found_);
    if (!isFound || !requested_.insert(block).second)
        return;
    text_->readBlock(block, [self = QPointer(const_cast<TextRowList*>(this)), text = text_.get(),
                             block](const TextContent::Rows& rows) {
        if (self && self->text_.get() == text)
            self->blockWasRead(block, rows);
    });
}

/// A block with fewer rows than were found is the end of a file that has shrunk: it is not asked for again.
void TextRowList::blockWasRead(std::size_t block, const TextContent::Rows& rows)
{
    keep(block, rows);
    const auto expected = std::min<std::size_t>(TextContent::kBlockRows,
                                                static_cast<std::size_t>(total_) - block * TextContent::kBlockRows);
    if (rows.size() >= expected)
        requested_.erase(block);
    const auto first = static_cast<int>(block * TextContent::kBlockRows) - base_;
    const auto last = std::min(first + static_cast<int>(TextContent::kBlockRows), count_) - 1;
    if (last >= std::max(first, 0))
        emit dataChanged(index(std::max(first, 0)), index(last), {kTextRole});
}

} // namespace tessel::qt
