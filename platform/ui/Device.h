#pragma once

#include "platform/ui/Animation.h"
#include "platform/ui/Geometry.h"
#include "platform/ui/Keyboard.h"
#include "platform/ui/Sharing.h"
#include "platform/ui/TextMeasurer.h"

#include <functional>
#include <memory>
#include <optional>

namespace tessel {

class TextField;
class Window;

enum class Idiom { Phone, Pad };
enum class LayoutDirection { LeftToRight, RightToLeft };
enum class InterfaceOrientation { Portrait = 1, PortraitUpsideDown = 2, LandscapeRight = 3, LandscapeLeft = 4 };
/// How much room there is along one axis.
enum class SizeClass { Compact = 1, Regular = 2 };

/// The device as the program sees it: its screen, its kind, its writing direction, which begins as that of the user's
/// language, and the window on it. A shell sets what changes. Main thread only.
class Device {
public:
    /// The screen in points; none when there is no screen.
    [[nodiscard]] Rect screenBounds() const { return screenBounds_; }
    /// Also resizes the key window.
    void setScreenBounds(const Rect&);

    /// Regular from 600 points of the window's width on a tablet, and from 736, where a phone lies on its side.
    [[nodiscard]] SizeClass horizontalSizeClass() const;
    /// Compact on a phone that lies on its side.
    [[nodiscard]] SizeClass verticalSizeClass() const;

    Idiom idiom = Idiom::Phone;
    LayoutDirection layoutDirection = LayoutDirection::LeftToRight;
    double screenScale = 1; ///< pixels a point
    double textScale = 1;   ///< the user's text size, from 1 to 2

    Rect statusBarFrame; ///< what the system covers of the screen; none in a window

    /// How the screen is held; a window lies on its side when it is wider than high.
    [[nodiscard]] InterfaceOrientation interfaceOrientation() const;

    [[nodiscard]] const TextMeasurer& textMeasurer() const { return *measurer_; }
    /// @param measurer outlives its use here; null for fixed advances
    void setTextMeasurer(const TextMeasurer* measurer);

    /// The field that has the keyboard, or null.
    [[nodiscard]] std::shared_ptr<TextField> firstResponder() const { return firstResponder_.lock(); }

    /// What the on-screen keyboard does, as it was told last.
    [[nodiscard]] const KeyboardMotion& keyboard() const { return keyboard_; }
    /// The shell's: tells those who look for the keyboard.
    void keyboardWillShow(const KeyboardMotion&);
    void keyboardWillHide(const KeyboardMotion&);

    Sharing sharing;

    /// How the changes that are being made now are to be seen; none: at once.
    std::optional<Animation> animation;

    /// Told after a change of which controllers are on screen, of what their bars hold, or of the layout's need: the
    /// shell looks at all of them again in its next turn.
    std::function<void()> screenChanged;
    void tellScreenChanged() const;

    [[nodiscard]] std::shared_ptr<Window> keyWindow() const { return keyWindow_.lock(); }

private:
    friend class TextField;
    friend class Window;

    Rect screenBounds_;
    const TextMeasurer* measurer_ = &fixedMeasurer_;
    FixedTextMeasurer fixedMeasurer_;
    std::weak_ptr<TextField> firstResponder_;
    KeyboardMotion keyboard_;
    std::weak_ptr<Window> keyWindow_;
};

} // namespace tessel
