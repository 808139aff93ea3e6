#include "browser/StatusBar.h"

#include "platform/documents/DocumentListController.h"

#include <utility>

namespace tessel {

namespace {

constexpr const char* const kStatusBarKey = "_TesselDriveAppStatusBar"; // it is the address that counts

} // namespace

std::shared_ptr<DocumentListControllerStatusBar> statusBar(const DocumentListController& list)
{
    const auto found = list.associatedObjects.find(&kStatusBarKey);
    return found == list.associatedObjects.end()
               ? nullptr
               : std::static_pointer_cast<DocumentListControllerStatusBar>(found->second);
}

void setStatusBar(DocumentListController& list, std::shared_ptr<DocumentListControllerStatusBar> bar)
{
    list.associatedObjects[&kStatusBarKey] = std::move(bar);
}

void createStatusBar(DocumentListController& list, const std::optional<StorageOffer>& offer,
                     const std::shared_ptr<DocumentListControllerStatusBarDelegate>& buttonPressDelegate)
{
    const auto bar = std::make_shared<DocumentListControllerStatusBar>();
    setStatusBar(list, bar);
    bar->createStatusBar(offer, buttonPressDelegate);
}

void displayStatusBar(DocumentListController& list)
{
    list.setToolbarItems(statusBar(list)->toolbarItems);
}

} // namespace tessel
