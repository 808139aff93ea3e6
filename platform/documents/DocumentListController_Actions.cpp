#include "platform/documents/DocumentListController.h"

#include "platform/base/Platform.h"
#include "platform/cloud/UserDefaults.h"
#include "platform/ui/Device.h"

namespace tessel {

namespace {

constexpr const char* kListModeKey = "orvane.TesselDriveApp.ListMode";

// The order in which a menu shows them: what only looks first, what destroys last.
constexpr ListAction kMenuOrder[] = {ListAction::Pop,   ListAction::Info, ListAction::Rename,
                                     ListAction::Share, ListAction::Move, ListAction::Delete};

} // namespace

std::vector<ListAction> DocumentListController::actions() const
{
    std::vector<ListAction> actions;
    const auto listener = delegate.lock();
    for (const auto action : kMenuOrder)
        if (listener && offeredActions >> static_cast<int>(action) & 1U &&
            listener->documentListControllerCanPerformAction(*this, action))
            actions.push_back(action);
    return actions;
}

void DocumentListController::performAction(ListAction action, const URL& url,
                                           const std::shared_ptr<View>& originatingView,
                                           const std::function<void()>& completion)
{
    const auto self = shared_from_this();
    if (const auto listener = delegate.lock())
        listener->documentListControllerPerformAction(*this, static_cast<int>(action), url, originatingView,
                                                      completion);
}

void DocumentListController::runScrollTest(const ScrollTest& test)
{
    if (scrollTestBegan)
        scrollTestBegan(test);
}

ListMode DocumentListController::listMode()
{
    const auto stored = platform::installed().defaults.value(kListModeKey);
    const auto* mode = stored.get<std::int64_t>();
    return mode && *mode == static_cast<int>(ListMode::Thumbnails) ? ListMode::Thumbnails : ListMode::Rows;
}

void DocumentListController::setListMode(ListMode mode)
{
    platform::installed().defaults.set(kListModeKey, Value(static_cast<std::int64_t>(mode)));
    platform::installed().device.tellScreenChanged();
}

} // namespace tessel
