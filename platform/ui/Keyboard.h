#pragma once

#include "platform/ui/Geometry.h"

namespace tessel {

/// Posted on the main thread when a field gets the keyboard, and when an on-screen keyboard comes or has another size.
inline constexpr const char* kKeyboardWillShowNotification = "KeyboardWillShow";
/// Posted on the main thread when the on-screen keyboard goes.
inline constexpr const char* kKeyboardWillHideNotification = "KeyboardWillHide";

/// How the on-screen keyboard comes or goes.
struct KeyboardMotion {
    static constexpr int kNoCurve = 7; ///< none of those that views are animated with

    Rect beginFrame;     ///< where it is as it begins to move, in the window; without a height while there is none
    double duration = 0; ///< seconds
    int curve = kNoCurve;

    friend bool operator==(const KeyboardMotion&, const KeyboardMotion&) = default;
};

} // namespace tessel
