#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace tessel {
class View;
}

namespace tessel::qt {

class Node;

/// The subviews of a view, as nodes under the role `node`.
class NodeList final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    static constexpr int kNodeRole = Qt::UserRole;

    explicit NodeList(Node& owner);

    [[nodiscard]] int count() const { return static_cast<int>(nodes_.size()); }
    [[nodiscard]] const std::vector<Node*>& nodes() const { return nodes_; }
    /// Follows the view's subviews. Nodes of those that stay, stay; the others are deleted later.
    void sync();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex&, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    using Views = std::vector<std::shared_ptr<View>>;

    void remove(std::size_t first, std::size_t end);
    void insert(std::size_t first, std::size_t end, const Views&);

    Node& owner_;
    std::vector<Node*> nodes_;
};

} // namespace tessel::qt
