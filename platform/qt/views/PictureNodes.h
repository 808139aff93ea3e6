#pragma once

#include "platform/qt/views/Node.h"

#include <QVariant>

#include <memory>

namespace tessel {
class DisplayList;
class ImageView;
class ScrollView;
} // namespace tessel

namespace tessel::qt {

/// An image, stretched to the frame.
class ImageNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(QString imageSource READ imageSource NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QVariant iconSize READ iconSize NOTIFY changed)
    Q_PROPERTY(bool smooth READ isSmooth NOTIFY changed)

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("image"); }
    /// Empty without an image.
    [[nodiscard]] QString imageSource() const;
    /// The name of the symbol, for an image that is one, as a source of images shows it too.
    [[nodiscard]] QString symbol() const;
    /// In which size an icon is to be had, in points: that in which it is shown, unless it is a smaller one; undefined
    /// for other images, which have one of their own.
    [[nodiscard]] QVariant iconSize() const;
    /// Whether pixels are smoothed when they are enlarged.
    [[nodiscard]] bool isSmooth() const;

private:
    [[nodiscard]] std::shared_ptr<ImageView> image() const;
};

/// A view that scrolls its content. x is counted from the leading edge.
class ScrollNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(double contentWidth READ contentWidth NOTIFY changed)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY changed)
    Q_PROPERTY(double contentX READ contentX NOTIFY changed)
    Q_PROPERTY(double contentY READ contentY NOTIFY changed)
    Q_PROPERTY(double topInset READ topInset NOTIFY changed)
    Q_PROPERTY(double leadingInset READ leadingInset NOTIFY changed)
    Q_PROPERTY(double bottomInset READ bottomInset NOTIFY changed)
    Q_PROPERTY(double trailingInset READ trailingInset NOTIFY changed)
    Q_PROPERTY(bool bounces READ bounces NOTIFY changed)
    Q_PROPERTY(bool indicators READ hasIndicators NOTIFY changed)
    Q_PROPERTY(int motion READ motion NOTIFY changed)
    Q_PROPERTY(int easing READ easing NOTIFY changed)

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("scroll"); }
    [[nodiscard]] double contentWidth() const;
    [[nodiscard]] double contentHeight() const;
    [[nodiscard]] double contentX() const;
    [[nodiscard]] double contentY() const;
    [[nodiscard]] double topInset() const { return insets().top; }
    [[nodiscard]] double leadingInset() const { return insets().leading; }
    [[nodiscard]] double bottomInset() const { return insets().bottom; }
    [[nodiscard]] double trailingInset() const { return insets().trailing; }
    [[nodiscard]] bool bounces() const;
    [[nodiscard]] bool hasIndicators() const;
    /// How long the last change is to be seen going on, in milliseconds, and for PropertyAnimation.easing.type, how.
    [[nodiscard]] int motion() const { return motion_; }
    [[nodiscard]] int easing() const { return easing_; }

    /// The user has scrolled: tells the view, and nobody else.
    Q_INVOKABLE void scrolled(double x, double y);

protected:
    void viewChanged(ViewChange) override;

private:
    [[nodiscard]] std::shared_ptr<ScrollView> scrollView() const;
    [[nodiscard]] EdgeInsets insets() const;

    int motion_ = 0;
    int easing_ = 0;
};

/// A stack of views, which lays them out itself.
class StackNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("stack"); }
};

/// A view that draws itself; a DrawnItem shows what it drew.
class DrawnNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("drawn"); }
    /// What the view draws now.
    [[nodiscard]] std::shared_ptr<const DisplayList> drawing() const;
    [[nodiscard]] bool isDark() const { return dark(); }

signals:
    /// The view draws something else.
    void drawingChanged();

protected:
    void viewChanged(ViewChange) override;
};

} // namespace tessel::qt
