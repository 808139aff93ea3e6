#include "platform/qt/views/Node.h"

#include "platform/qt/views/Colors.h"
#include "platform/qt/views/NodeTree.h"

namespace tessel::qt {

/// What the view calls. It can be told apart from that of another node of the same view, such as one of a page that is
/// still leaving while the next one comes.
struct Node::Listener {
    Node* node;

    void operator()(ViewChange change) const { node->viewChanged(change); }
};

Node::Node(const std::shared_ptr<View>& view, const NodeTree& tree, QObject* parent)
    : QObject(parent), view_(view), tree_(tree)
{
    view->changed = Listener{this};
}

Node::~Node()
{
    const auto view = view_.lock();
    const auto* listener = view ? view->changed.target<Listener>() : nullptr;
    if (listener && listener->node == this)
        view->changed = nullptr;
}

bool Node::isVisible() const
{
    const auto view = view_.lock();
    return view && !view->hidden();
}

QColor Node::color() const
{
    const auto view = view_.lock();
    return view ? adapted(view->backgroundColor()) : QColor(Qt::transparent);
}

double Node::borderWidth() const
{
    const auto view = view_.lock();
    return view ? view->border().width : 0;
}

QColor Node::borderColor() const
{
    const auto view = view_.lock();
    return view ? adapted(view->border().color) : QColor(Qt::transparent);
}

QString Node::accessibleName() const
{
    const auto view = view_.lock();
    return view ? QString::fromStdString(view->accessibilityLabel()) : QString();
}

NodeList* Node::childList()
{
    if (!children_)
        children_ = new NodeList(*this);
    return children_;
}

void Node::tap()
{
    if (const auto view = view_.lock())
        view->tap();
}

void Node::refresh()
{
    viewChanged(ViewChange::Properties);
    viewChanged(ViewChange::Drawing);
    for (auto* const child : children_ ? children_->nodes() : std::vector<Node*>())
        child->refresh();
}

Rect Node::frame() const
{
    const auto view = view_.lock();
    return view ? view->frame() : Rect();
}

bool Node::dark() const
{
    return tree_.dark();
}

QColor Node::adapted(const Color& color) const
{
    return adaptedColor(color, dark());
}

void Node::viewChanged(ViewChange change)
{
    if (change == ViewChange::Properties)
        emit changed();
    else if (change == ViewChange::Subviews && children_)
        children_->sync();
}

} // namespace tessel::qt
