#include "platform/documents/PeekController.h"

#include "platform/documents/DocumentListController.h"

namespace tessel {

bool PeekController::peek(const std::shared_ptr<DocumentListController>& list, const URL& item)
{
    const auto navigation = list->navigationController();
    const auto delegate = list->delegate.lock();
    if (!navigation || !delegate || list->editing())
        return false;
    const auto shown = delegate->documentListControllerViewControllerForPreviewingItemAtURL(*list, item);
    if (!shown)
        return false;
    const auto peek = std::make_shared<PeekController>(list, item);
    peek->setViewControllers({shown}, Animated::No);
    navigation->visibleViewController()->present(peek, Animated::Yes);
    return true;
}

void PeekController::pop()
{
    const auto self = shared_from_this();
    end();
    if (const auto list = list_.lock())
        list->performAction(ListAction::Pop, item_, nullptr, {});
}

void PeekController::release()
{
    end();
}

// The controller may be shown elsewhere at once.
void PeekController::end()
{
    const auto self = shared_from_this();
    dismiss(Animated::Yes);
    setViewControllers({}, Animated::No);
}

} // namespace tessel
