#include "platform/qt/views/NodeTree.h"

#include "platform/qt/views/PictureNodes.h"
#include "platform/qt/views/TextFieldNode.h"
#include "platform/qt/views/TextNodes.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"

#include <QQmlEngine>

#include <utility>

namespace tessel::qt {

namespace {

template <typename Kind, typename NodeOfKind>
Node* nodeIf(const std::shared_ptr<View>& view, const NodeTree& tree, QObject* parent)
{
    return dynamic_cast<const Kind*>(view.get()) ? new NodeOfKind(view, tree, parent) : nullptr;
}

Node* newNode(const std::shared_ptr<View>& view, const NodeTree& tree, QObject* parent)
{
    for (const auto make : {nodeIf<TextField, TextFieldNode>, nodeIf<Button, ButtonNode>, nodeIf<Label, LabelNode>,
                            nodeIf<ImageView, ImageNode>, nodeIf<ScrollView, ScrollNode>, nodeIf<StackView, StackNode>})
        if (auto* const node = make(view, tree, parent))
            return node;
    return view->drawsItself() ? new DrawnNode(view, tree, parent) : new Node(view, tree, parent);
}

} // namespace

/// Nodes ask their tree as long as they live.
NodeTree::~NodeTree()
{
    for (const auto& root : roots_)
        delete root.second;
}

Node* NodeTree::makeNode(const std::shared_ptr<View>& view, const NodeTree& tree, QObject* parent)
{
    auto* const node = newNode(view, tree, parent);
    QQmlEngine::setObjectOwnership(node, QQmlEngine::CppOwnership);
    return node;
}

Node* NodeTree::nodeFor(const std::shared_ptr<View>& view)
{
    dropGone();
    if (!view)
        return nullptr;
    auto& node = roots_[view.get()];
    if (!node)
        node = makeNode(view, *this, this);
    return node;
}

void NodeTree::release(const std::shared_ptr<View>& view)
{
    if (const auto root = roots_.extract(view.get()))
        root.mapped()->deleteLater();
}

/// Also, so that a view that lies where one lay before is not taken for it.
void NodeTree::dropGone()
{
    std::erase_if(roots_, [](const auto& root) {
        const bool isGone = !root.second->view();
        if (isGone)
            root.second->deleteLater();
        return isGone;
    });
}

void NodeTree::setDark(bool dark)
{
    if (std::exchange(dark_, dark) == dark)
        return;
    for (const auto& root : roots_)
        root.second->refresh();
}

} // namespace tessel::qt
