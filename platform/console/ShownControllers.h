#pragma once

#include <cstddef>
#include <memory>

namespace tessel {

class AlertController;
class DocumentListController;
class NavigationController;
class PreviewController;
class PeekController;
class SearchController;
class ViewController;

/// The controllers that the key window shows at this moment; each null when there is none of its kind.
struct ShownControllers {
    std::shared_ptr<NavigationController> navigation; ///< the uppermost stack
    std::shared_ptr<PeekController> peek;             ///< the same, when it is that of a peek
    std::shared_ptr<ViewController> top;              ///< its top controller, or what covers it but for what follows
    std::shared_ptr<DocumentListController> list;     ///< the top controller, when it is a list
    std::shared_ptr<PreviewController> preview;       ///< likewise, when it is a preview
    std::shared_ptr<SearchController> search;         ///< presented over the list
    std::shared_ptr<AlertController> alert;           ///< over everything else
    bool isStackCovered = false;                      ///< the top controller is not of the stack

    [[nodiscard]] static ShownControllers now();

    /// Whether what is on screen is still being fetched.
    [[nodiscard]] bool isBusy() const;
    /// Whether it does not show yet what has happened to the folder.
    [[nodiscard]] bool isCatchingUp() const;

private:
    void add(const std::shared_ptr<ViewController>& presented);
};

} // namespace tessel
