#pragma once

#include "platform/qt/Presence.h"
#include "platform/qt/lists/FolderList.h"
#include "platform/qt/preview/DocumentPreview.h"
#include "platform/qt/views/Node.h"
#include "platform/qt/views/NodeTree.h"

#include <QString>
#include <QVariantList>

namespace tessel {
class NavigationController;
} // namespace tessel

namespace tessel::qt {

class BarItems;

/// One controller of a navigation stack, with what its bars hold, for QML.
class Page : public Presence {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Pages are made by the shell.")
    Q_PROPERTY(QString kind READ kind CONSTANT)
    Q_PROPERTY(QString title MEMBER title_ NOTIFY titleChanged)
    Q_PROPERTY(QString prompt MEMBER prompt_ NOTIFY titleChanged)
    Q_PROPERTY(QString backTitle MEMBER backTitle_ NOTIFY backChanged)
    Q_PROPERTY(bool canGoBack MEMBER canGoBack_ NOTIFY backChanged)
    Q_PROPERTY(QVariantList leftItems MEMBER leftItems_ NOTIFY leftItemsChanged)
    Q_PROPERTY(QVariantList rightItems MEMBER rightItems_ NOTIFY rightItemsChanged)
    Q_PROPERTY(QVariantList toolbarItems MEMBER toolbarItems_ NOTIFY toolbarItemsChanged)
    Q_PROPERTY(bool toolbarHidden MEMBER isToolbarHidden_ NOTIFY toolbarHiddenChanged)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(bool underBars READ isUnderBars CONSTANT)
    Q_PROPERTY(tessel::qt::FolderList* list READ list CONSTANT)
    Q_PROPERTY(tessel::qt::DocumentPreview* preview READ preview CONSTANT)
    Q_PROPERTY(tessel::qt::Node* root READ root CONSTANT)

public:
    Page(const std::shared_ptr<ViewController>&, bool dark, QObject* parent);

    /// "list", "preview", "unavailable" or "views".
    [[nodiscard]] QString kind() const;
    /// Why there is nothing to see, on an unavailable page.
    [[nodiscard]] QString message() const;
    /// Whether the view lies under the bars as well.
    [[nodiscard]] bool isUnderBars() const;
    [[nodiscard]] FolderList* list() const { return list_; }            ///< null on other pages
    [[nodiscard]] DocumentPreview* preview() const { return preview_; } ///< likewise
    /// The view of a page of views; null on other pages. Its size is that between the bars, or of the page.
    [[nodiscard]] Node* root();

    /// Reads everything again. @param below the controller beneath in the stack, or null
    void sync(const NavigationController&, const ViewController* below, BarItems&);
    void setDark(bool dark) { views_.setDark(dark); }

signals:
    void titleChanged();
    void backChanged();
    void leftItemsChanged();
    void rightItemsChanged();
    void toolbarItemsChanged();
    void toolbarHiddenChanged();

private:
    template <typename T>
    void assign(T& property, T value, void (Page::*changed)())
    {
        if (property == value)
            return;
        property = std::move(value);
        emit(this->*changed)();
    }
    void syncBack(const ViewController* below);

    NodeTree views_;
    FolderList* list_ = nullptr;
    DocumentPreview* preview_ = nullptr;
    QString title_;
    QString prompt_;    ///< over the title
    QString backTitle_; ///< what the back button leads to
    bool canGoBack_ = false;
    QVariantList leftItems_;
    QVariantList rightItems_; ///< from the edge inwards
    QVariantList toolbarItems_;
    bool isToolbarHidden_ = true;
};

} // namespace tessel::qt
