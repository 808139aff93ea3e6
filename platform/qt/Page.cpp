#include "platform/qt/Page.h"

#include "platform/documents/DocumentListController.h"
#include "platform/documents/PreviewController.h"
#include "platform/documents/UnavailableViewController.h"
#include "platform/qt/BarItems.h"
#include "platform/qt/PageStack.h"
#include "platform/ui/NavigationController.h"

namespace tessel::qt {

Page::Page(const std::shared_ptr<ViewController>& controller, bool dark, QObject* parent)
    : Presence(controller, parent), views_(dark)
{
    if (const auto list = std::dynamic_pointer_cast<DocumentListController>(controller))
        list_ = new FolderList(list, this);
    if (const auto preview = std::dynamic_pointer_cast<PreviewController>(controller))
        preview_ = new DocumentPreview(preview, this);
}

QString Page::kind() const
{
    if (list_)
        return QStringLiteral("list");
    if (preview_)
        return QStringLiteral("preview");
    const bool isUnavailable = std::dynamic_pointer_cast<UnavailableViewController>(controller()) != nullptr;
    return isUnavailable ? QStringLiteral("unavailable") : QStringLiteral("views");
}

QString Page::message() const
{
    const auto unavailable = std::dynamic_pointer_cast<UnavailableViewController>(controller());
    return unavailable ? QString::fromStdString(unavailable->message()) : QString();
}

bool Page::isUnderBars() const
{
    return controller()->extendsUnderBars;
}

Node* Page::root()
{
    return kind() == QStringLiteral("views") ? views_.nodeFor(controller()->view().shared_from_this()) : nullptr;
}

void Page::sync(const NavigationController& navigation, const ViewController* below, BarItems& items)
{
    const auto& item = controller()->navigationItem;
    assign(title_, QString::fromStdString(item.title()), &Page::titleChanged);
    assign(prompt_, QString::fromStdString(item.prompt()), &Page::titleChanged);
    syncBack(below);
    assign(leftItems_, items.itemsFor(item.leftItems()), &Page::leftItemsChanged);
    assign(rightItems_, items.itemsFor(item.rightItems()), &Page::rightItemsChanged);
    assign(toolbarItems_, items.itemsFor(controller()->toolbarItems()), &Page::toolbarItemsChanged);
    assign(isToolbarHidden_, !PageStack::hasToolbar(navigation, *controller()), &Page::toolbarHiddenChanged);
    if (list_)
        list_->sync();
    if (preview_)
        preview_->sync();
}

void Page::syncBack(const ViewController* below)
{
    const auto& item = controller()->navigationItem;
    const bool hasRoom = item.leftItems().empty() || item.leftItemsSupplementBackButton();
    assign(backTitle_, below ? QString::fromStdString(below->navigationItem.title()) : QString(), &Page::backChanged);
    assign(canGoBack_, below && hasRoom && !item.hidesBackButton(), &Page::backChanged);
}

} // namespace tessel::qt
