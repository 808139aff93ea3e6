#pragma once

#include "platform/qt/views/Node.h"

#include <QObject>

#include <memory>
#include <unordered_map>

namespace tessel::qt {

/// Makes and owns the nodes of some views and of all that is below them: those of one page, or of one alert. Main
/// thread only.
class NodeTree final : public QObject {
    Q_OBJECT

public:
    explicit NodeTree(bool dark, QObject* parent = nullptr) : QObject(parent), dark_(dark) {}
    /// All its nodes go with it.
    ~NodeTree() override;

    /// The node of a view; the same one as long as both exist. Null for no view.
    [[nodiscard]] Node* nodeFor(const std::shared_ptr<View>&);
    /// Lets the node of a view, and those below it, be deleted later.
    void release(const std::shared_ptr<View>&);

    /// Whether colours are shown in dark appearance.
    [[nodiscard]] bool dark() const { return dark_; }
    void setDark(bool);

private:
    friend class NodeList;

    /// A node of the kind that the view asks for.
    [[nodiscard]] static Node* makeNode(const std::shared_ptr<View>&, const NodeTree&, QObject* parent);
    void dropGone();

    std::unordered_map<const View*, Node*> roots_;
    bool dark_;
};

} // namespace tessel::qt
