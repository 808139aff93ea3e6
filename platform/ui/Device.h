#pragma once

#include "platform/ui/Geometry.h"

#include <memory>

namespace tessel {

class Window;

enum class Idiom { Phone, Pad };
enum class LayoutDirection { LeftToRight, RightToLeft };

/// The device as the program sees it: its screen, its kind, its writing direction, and the window on it. A shell sets
/// what changes. Main thread only.
class Device {
public:
    /// The screen in points; none when there is no screen.
    [[nodiscard]] Rect screenBounds() const { return screenBounds_; }
    /// Also resizes the key window.
    void setScreenBounds(const Rect&);

    Idiom idiom = Idiom::Phone;
    LayoutDirection layoutDirection = LayoutDirection::LeftToRight;

    [[nodiscard]] std::shared_ptr<Window> keyWindow() const { return keyWindow_.lock(); }

private:
    friend class Window;

    Rect screenBounds_;
    std::weak_ptr<Window> keyWindow_;
};

} // namespace tessel
