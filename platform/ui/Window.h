#pragma once

#include "platform/ui/View.h"

#include <memory>

namespace tessel {

class ViewController;

/// The program's window: a place for one tree of view controllers.
class Window : public View {
public:
    explicit Window(const Rect& bounds) : View(bounds) {}

    [[nodiscard]] const std::shared_ptr<ViewController>& rootViewController() const { return root_; }
    void setRootViewController(std::shared_ptr<ViewController> root) { root_ = std::move(root); }

    /// Makes this the device's key window, loads the root controller's view and brings it on screen.
    void makeKeyAndVisible();

private:
    std::shared_ptr<ViewController> root_;
};

} // namespace tessel
