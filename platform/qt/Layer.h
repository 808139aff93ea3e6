#pragma once

#include "platform/qt/PageStack.h"
#include "platform/qt/Presence.h"
#include "platform/qt/views/Node.h"
#include "platform/qt/views/NodeTree.h"

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVariantList>

namespace tessel {
class AlertController;
class NavigationController;
struct Size;
} // namespace tessel

namespace tessel::qt {

class BarItems;

/// A controller that another one presents, for QML.
class Layer : public Presence {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Layers are made by the shell.")
    Q_PROPERTY(QString kind READ kind CONSTANT)
    Q_PROPERTY(QString title MEMBER title_ NOTIFY titleChanged)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QVariantList actions MEMBER actions_ NOTIFY actionsChanged)
    Q_PROPERTY(QVariantList fields MEMBER fields_ NOTIFY fieldsChanged)
    Q_PROPERTY(tessel::qt::Node* content READ content CONSTANT)
    Q_PROPERTY(tessel::qt::Node* root READ root CONSTANT)
    Q_PROPERTY(tessel::qt::PageStack* pages READ pages CONSTANT)
    Q_PROPERTY(bool overContext READ isOverContext CONSTANT)
    Q_PROPERTY(double contentWidth READ contentWidth WRITE setContentWidth NOTIFY contentWidthChanged)
    Q_PROPERTY(QRectF anchor MEMBER anchor_ NOTIFY anchorChanged)
    Q_PROPERTY(bool anchorLeftOrRight READ anchorLeftOrRight CONSTANT)

public:
    Layer(const std::shared_ptr<ViewController>&, bool dark, QObject* parent);

    /// "alert", "sheet", "views", "popover" or "peek".
    [[nodiscard]] QString kind() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] Node* content(); ///< the area of an alert that is the program's own, or null
    /// The room for `content`, in points: QML writes it.
    [[nodiscard]] double contentWidth() const { return contentWidth_; }
    void setContentWidth(double);
    [[nodiscard]] Node* root();                               ///< of "views" and "popover" without pages, else null
    [[nodiscard]] PageStack* pages() const { return pages_; } ///< when a navigation stack is presented, else null
    [[nodiscard]] bool isOverContext() const;                 ///< what lies beneath shows through
    [[nodiscard]] bool anchorLeftOrRight() const;
    [[nodiscard]] bool coversWindow() const;
    [[nodiscard]] std::shared_ptr<NavigationController> navigation() const; ///< the stack that is presented, or null

    /// Reads everything again.
    void sync(BarItems&);
    /// @param anchor what a sheet or popover points at, in the window's coordinates; empty for nothing
    void setAnchor(const QRectF& anchor);
    void setDark(bool);
    /// Lays out what the program shows in this layer.
    void layOut(const Size& window, bool isTablet) const;

    /// How large a peek is in a window, in points.
    Q_INVOKABLE QSizeF cardSize(double windowWidth, double windowHeight) const;

    /// A touch beside it, or Escape: cancels an alert, ends a popover, lets go of a peek; nothing else can be ended so.
    Q_INVOKABLE bool cancel();
    /// Opens what is peeked at.
    Q_INVOKABLE void pop();

signals:
    void titleChanged();
    void actionsChanged();
    void fieldsChanged();
    void anchorChanged();
    void contentWidthChanged();

private:
    [[nodiscard]] std::shared_ptr<AlertController> alert() const;
    void syncAlert(const std::shared_ptr<AlertController>&);

    NodeTree views_;
    PageStack* pages_ = nullptr;
    QString title_;
    QVariantList actions_;
    QVariantList fields_;
    QRectF anchor_;
    double contentWidth_ = 238;
};

} // namespace tessel::qt
