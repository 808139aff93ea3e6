#pragma once

#include "platform/qt/BarItems.h"
#include "platform/qt/LayerList.h"
#include "platform/qt/PageStack.h"

#include <QPointer>
#include <QQuickItem>

#include <memory>
#include <vector>

namespace tessel {
class ViewController;
struct PopoverAnchor;
struct Size;
} // namespace tessel

namespace tessel::qt {

class SystemAppearance;

/// What QML sees of the program: the device, and the controllers on the screen. The program's controllers are the
/// truth. Whenever something on the screen has changed, all of them are looked at again, once, in Qt's next turn, and
/// QML hears of what is different.
class Shell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The context property shell is the only one.")
    Q_PROPERTY(bool tablet READ isTablet NOTIFY deviceChanged)
    Q_PROPERTY(bool mirrored READ isMirrored NOTIFY deviceChanged)
    Q_PROPERTY(bool dark READ isDark NOTIFY deviceChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY deviceChanged)
    Q_PROPERTY(double navigationBarHeight READ navigationBarHeight NOTIFY deviceChanged)
    Q_PROPERTY(double toolbarHeight READ toolbarHeight NOTIFY deviceChanged)
    Q_PROPERTY(double toolbarMargin READ toolbarMargin NOTIFY deviceChanged)
    Q_PROPERTY(tessel::qt::PageStack* pages READ pages CONSTANT)
    Q_PROPERTY(tessel::qt::LayerList* layers READ layers CONSTANT)
    Q_PROPERTY(bool active MEMBER isActive_ NOTIFY activeChanged)
    Q_PROPERTY(QString applicationTitle READ applicationTitle CONSTANT)

public:
    /// Becomes the device's listener. @param appearance outlives the shell
    explicit Shell(const SystemAppearance& appearance);
    ~Shell() override;

    [[nodiscard]] bool isTablet() const;
    [[nodiscard]] bool isMirrored() const; ///< the writing direction is from right to left
    [[nodiscard]] bool isDark() const;
    [[nodiscard]] double textScale() const;
    [[nodiscard]] double navigationBarHeight() const;
    [[nodiscard]] double toolbarHeight() const;
    /// From the edges of a toolbar to its items.
    [[nodiscard]] double toolbarMargin() const;
    [[nodiscard]] PageStack* pages() const { return pages_; }
    [[nodiscard]] LayerList* layers() const { return layers_; }
    [[nodiscard]] QString applicationTitle() const;

    /// The item that holds the whole scene, in which the anchors of popovers are looked for; null: there are none.
    void setScene(QQuickItem* scene) { scene_ = scene; }
    /// Looks again where things lie that popovers point at: with each frame, for QML places its items just before it.
    void syncAnchors();
    /// Whether the window has the user's attention.
    void setActive(bool);
    /// Looks at everything now.
    Q_SLOT void sync();

    /// The text in the user's language.
    [[nodiscard]] Q_INVOKABLE QString text(const QString& key) const;
    /// What Escape and the gestures for going back mean now: cancels what lies on top, or presses the back button, or
    /// the Cancel button in its place.
    /// @returns whether there was something to go back from.
    Q_INVOKABLE bool back();
    /// The window's size in points.
    Q_INVOKABLE void setSize(double width, double height);

signals:
    void deviceChanged();
    void activeChanged();

private:
    bool goBack();
    void screenChanged();
    void appearanceChanged();
    void layOut();
    [[nodiscard]] QRectF rectOf(const PopoverAnchor&) const;

    const SystemAppearance& appearance_;
    BarItems* const items_;
    PageStack* const pages_;
    LayerList* const layers_;
    QPointer<QQuickItem> scene_;
    bool isActive_ = true;
    bool isSyncPosted_ = false;
};

} // namespace tessel::qt
