#pragma once

#include "platform/qt/views/NodeList.h"
#include "platform/ui/View.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <memory>

namespace tessel::qt {

class NodeTree;

/// What QML sees of one view of the program: its properties by value, and what the user can do with it. It holds the
/// view weakly, and is empty and does nothing once that is gone. Owned by the node of the superview, or by its tree.
///
/// All properties of the view itself change with one signal, `changed`. Frames are as in the model: x is counted from
/// the leading edge.
class Node : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(QString kind READ kind CONSTANT)
    Q_PROPERTY(double x READ x NOTIFY changed)
    Q_PROPERTY(double y READ y NOTIFY changed)
    Q_PROPERTY(double width READ width NOTIFY changed)
    Q_PROPERTY(double height READ height NOTIFY changed)
    Q_PROPERTY(bool visible READ isVisible NOTIFY changed)
    Q_PROPERTY(QColor color READ color NOTIFY changed)
    Q_PROPERTY(double borderWidth READ borderWidth NOTIFY changed)
    Q_PROPERTY(QColor borderColor READ borderColor NOTIFY changed)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY changed)
    Q_PROPERTY(tessel::qt::NodeList* children READ childList CONSTANT)

public:
    Node(const std::shared_ptr<View>&, const NodeTree&, QObject* parent);
    ~Node() override;

    /// The view; null when it is gone.
    [[nodiscard]] std::shared_ptr<View> view() const { return view_.lock(); }

    /// "plain", "label", "button", "textField", "image", "scroll", "stack" or "drawn".
    [[nodiscard]] virtual QString kind() const { return QStringLiteral("plain"); }
    [[nodiscard]] double x() const { return frame().x; }
    [[nodiscard]] double y() const { return frame().y; }
    [[nodiscard]] double width() const { return frame().width; }
    [[nodiscard]] double height() const { return frame().height; }
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] QColor color() const;
    [[nodiscard]] double borderWidth() const;
    [[nodiscard]] QColor borderColor() const;
    [[nodiscard]] QString accessibleName() const;
    /// The nodes of the subviews, back to front.
    [[nodiscard]] NodeList* childList();

    /// A tap that nothing in the view has taken.
    Q_INVOKABLE void tap();

    /// Has QML read everything anew, here and below.
    void refresh();

signals:
    /// A property of the view has another value.
    void changed();

protected:
    [[nodiscard]] Rect frame() const;
    [[nodiscard]] bool dark() const;
    [[nodiscard]] QColor adapted(const Color&) const;
    /// Told of each change of the view.
    virtual void viewChanged(ViewChange);

private:
    friend class NodeList;
    struct Listener;

    std::weak_ptr<View> view_;
    const NodeTree& tree_;
    NodeList* children_ = nullptr; ///< made when it is first asked for
};

} // namespace tessel::qt
