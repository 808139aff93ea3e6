#pragma once

#include <cstddef>
#include <memory>

namespace tessel {

class DocumentListController;
class NavigationController;
class SearchController;
class ViewController;

/// The controllers that the key window shows at this moment; each null when there is none of its kind.
struct ShownControllers {
    std::shared_ptr<NavigationController> navigation;
    std::shared_ptr<ViewController> top;
    std::shared_ptr<DocumentListController> list; ///< the top controller, when it is a list
    std::shared_ptr<SearchController> search;     ///< presented over the navigation controller

    [[nodiscard]] static ShownControllers now();

    /// Whether what is on screen is still being fetched.
    [[nodiscard]] bool isBusy() const;
};

} // namespace tessel
