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
    const auto self = shared_from_this();
    end();
    const auto list = list_.lock();
    const auto delegate = list ? list->delegate.lock() : nullptr;
    if (delegate)
        delegate->documentListControllerPeekWasReleased(*list);
}

// The controller may be shown elsewhere at once.
void PeekController::end()
{
    const auto presenting = presentingViewController();
    if (!presenting)
        return;
    presenting->dismiss(Animated::Yes);
    setViewControllers({}, Animated::No);
}

} // namespace tessel
