#pragma once

#include "platform/qt/views/Node.h"
#include "platform/ui/Label.h"

#include <QFont>

namespace tessel {
class Button;
} // namespace tessel

namespace tessel::qt {

/// For horizontalAlignment of an item with layout mirroring, which exchanges left and right: they are exchanged here
/// first, so that only what is natural is mirrored.
[[nodiscard]] int horizontalAlignment(TextAlignment);

/// A label: text, wrapped at words and, within one that is too long for a line, anywhere.
class LabelNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString richText READ richText NOTIFY changed)
    Q_PROPERTY(QFont font READ font NOTIFY changed)
    Q_PROPERTY(QColor textColor READ textColor NOTIFY changed)
    Q_PROPERTY(int alignment READ alignment NOTIFY changed)
    Q_PROPERTY(int lines READ lines NOTIFY changed)
    Q_PROPERTY(int elide READ elide NOTIFY changed)

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("label"); }
    [[nodiscard]] QString text() const;
    /// The text with the images in it, as Text.RichText reads it; empty for a plain one. Each image is as high as a
    /// line; what is raised is not told.
    [[nodiscard]] QString richText() const;
    [[nodiscard]] QFont font() const;
    [[nodiscard]] QColor textColor() const;
    /// See horizontalAlignment.
    [[nodiscard]] int alignment() const;
    /// The most lines; 0 for any number.
    [[nodiscard]] int lines() const;
    /// For Text.elide.
    [[nodiscard]] int elide() const;

private:
    [[nodiscard]] std::shared_ptr<Label> label() const;
};

/// A button: a title or an image.
class ButtonNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString imageSource READ imageSource NOTIFY changed)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(QFont font READ font NOTIFY changed)

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("button"); }
    [[nodiscard]] QString title() const;
    /// The name of the symbol that is its image, to be shown in the accent colour; empty when it is none.
    [[nodiscard]] QString symbol() const;
    /// An image that is no symbol; empty without.
    [[nodiscard]] QString imageSource() const;
    [[nodiscard]] bool isEnabled() const;
    [[nodiscard]] QFont font() const;

    Q_INVOKABLE void press();

private:
    [[nodiscard]] std::shared_ptr<Button> button() const;
};

} // namespace tessel::qt
