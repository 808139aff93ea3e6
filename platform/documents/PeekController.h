#pragma once

#include "platform/base/URL.h"
#include "platform/ui/NavigationController.h"

#include <memory>

namespace tessel {

class DocumentListController;

/// What a list shows of an item while its row is pressed: a controller on a stack of its own, over the lists. Main
/// thread only.
class PeekController final : public NavigationController {
public:
    /// Presents what the list's delegate has to show. @returns whether there is something
    static bool peek(const std::shared_ptr<DocumentListController>&, const URL& item);

    PeekController(std::weak_ptr<DocumentListController> list, URL item)
        : list_(std::move(list)), item_(std::move(item))
    {
        presentationStyle = PresentationStyle::Peek;
    }

    [[nodiscard]] std::string className() const override { return "PeekController"; }

    /// The user presses on: the peek ends, and the list's delegate is asked to open the item.
    void pop();
    /// The user lets go.
    void release();

private:
    void end();

    const std::weak_ptr<DocumentListController> list_;
    const URL item_;
};

} // namespace tessel
