#include "preview/GlanciaItemController.h"

#include "app/common/Log.h"
#include "files/DRItem.h"
#include "platform/files/TypeRegistry.h"
#include "platform/ui/BarButtonItem.h"
#include "preview/PreviewItemManager.h"

namespace tessel {

/// The buttons are the controller's own, so they never outlive it.
GlanciaItemController::GlanciaItemController()
{
    delegate = this;
    dataSource = this;
    const auto deletion = std::make_shared<std::weak_ptr<BarButtonItem>>();
    const auto trash = BarButtonItem::system(BarButtonItem::System::Trash,
                                             [this, deletion] { showWarningAndDeleteDocument(deletion->lock()); });
    *deletion = trash;
    navigationItem.setRightItems(
        {trash, BarButtonItem::system(BarButtonItem::System::Organize, [this] { showMoveTarget(); })});
}

GlanciaItemController::GlanciaItemController(const std::shared_ptr<PreviewItemManager>& manager)
    : GlanciaItemController()
{
    take(manager);
}

std::shared_ptr<GlanciaItemController> GlanciaItemController::defaultController()
{
    static const auto controller = std::make_shared<GlanciaItemController>();
    return controller;
}

void GlanciaItemController::take(const std::shared_ptr<PreviewItemManager>& manager)
{
    itemManager = manager;
    arrayOfDocuments.reset();
    if (manager && manager->item() && manager->item()->resolvedURL())
        arrayOfDocuments = {*manager->item()->resolvedURL()};
}

void GlanciaItemController::glanciaNewItem(const std::shared_ptr<PreviewItemManager>& manager)
{
    TSD_FUNCTION("-[GlanciaItemController glanciaNewItem:]");
    take(manager);
    TSD_DEBUG("Reloading the preview's data");
    reloadData();
}

void GlanciaItemController::viewWillDisappear(Animated animated)
{
    if (const auto manager = itemManager.lock())
        manager->viewControllerWillDisappear(*this);
    PreviewController::viewWillDisappear(animated);
}

std::size_t GlanciaItemController::numberOfPreviewItemsInPreviewController(const PreviewController&) const
{
    return arrayOfDocuments ? arrayOfDocuments->size() : 0;
}

URL GlanciaItemController::previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t index) const
{
    return arrayOfDocuments->at(index);
}

bool GlanciaItemController::previewControllerCanEditItem(const PreviewController&, const URL& item) const
{
    return _glPreviewItemIsPDFKind(item);
}

bool GlanciaItemController::previewControllerShouldSaveEditedItem(const PreviewController&, const URL& item) const
{
    return _glPreviewItemIsPDFKind(item);
}

bool GlanciaItemController::_glPreviewItemIsPDFKind(const URL& item)
{
    const auto& types = platform::installed().types;
    const auto type = types.identifierForExtension(item.pathExtension());
    return type && types.conforms(*type, "com.adobe.pdf");
}

void GlanciaItemController::showMoveTarget()
{
    TSD_FUNCTION("-[GlanciaItemController showMoveTarget:]");
    TSD_USER_ACTION("Pressed Move (GL)");
    TSD_INFO("Pressed Move");
    if (const auto manager = itemManager.lock())
        manager->showMoveTarget(shared_from_this());
}

void GlanciaItemController::showWarningAndDeleteDocument(const std::shared_ptr<BarButtonItem>& sender)
{
    TSD_FUNCTION("-[GlanciaItemController showWarningAndDeleteDocument:]");
    TSD_USER_ACTION("Pressed Delete (GL)");
    if (const auto manager = itemManager.lock())
        manager->showWarningAndDeleteDocument(shared_from_this(), sender);
}

} // namespace tessel
