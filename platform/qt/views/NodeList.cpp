#include "platform/qt/views/NodeList.h"

#include "platform/qt/views/Node.h"
#include "platform/qt/views/NodeTree.h"

#include <algorithm>

namespace tessel::qt {

NodeList::NodeList(Node& owner) : QAbstractListModel(&owner), owner_(owner)
{
    sync();
}

/// What is in the middle, between what is the same at the beginning and at the end, goes and comes.
void NodeList::sync()
{
    const auto view = owner_.view();
    const auto views = view ? view->subviews() : Views();
    const auto isOf = [](const Node* node, const std::shared_ptr<View>& subview) { return node->view() == subview; };
    const auto front = static_cast<std::size_t>(std::ranges::mismatch(nodes_, views, isOf).in1 - nodes_.begin());
    const auto most = std::min(nodes_.size(), views.size()) - front;
    std::size_t back = 0;
    while (back < most && isOf(nodes_[nodes_.size() - back - 1], views[views.size() - back - 1]))
        ++back;
    const auto countBefore = nodes_.size();
    remove(front, nodes_.size() - back);
    insert(front, views.size() - back, views);
    if (nodes_.size() != countBefore)
        emit countChanged();
}

void NodeList::remove(std::size_t first, std::size_t end)
{
    if (first == end)
        return;
    const auto begin = nodes_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto past = nodes_.begin() + static_cast<std::ptrdiff_t>(end);
    const std::vector<Node*> removed(begin, past);
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
    nodes_.erase(begin, past);
    endRemoveRows();
    for (auto* const node : removed)
        node->deleteLater(); // QML may be inside one of its handlers
}

void NodeList::insert(std::size_t first, std::size_t end, const Views& views)
{
    if (first == end)
        return;
    std::vector<Node*> inserted;
    for (auto index = first; index < end; ++index)
        inserted.push_back(NodeTree::makeNode(views[index], owner_.tree_, &owner_));
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
    nodes_.insert(nodes_.begin() + static_cast<std::ptrdiff_t>(first), inserted.begin(), inserted.end());
    endInsertRows();
}

int NodeList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant NodeList::data(const QModelIndex& index, int role) const
{
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || role != kNodeRole || row >= nodes_.size())
        return {};
    return QVariant::fromValue<QObject*>(nodes_[row]);
}

QHash<int, QByteArray> NodeList::roleNames() const
{
    return {{kNodeRole, "node"}};
}

} // namespace tessel::qt
