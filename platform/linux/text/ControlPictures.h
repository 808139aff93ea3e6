#pragma once

#include <unicode/uchar.h>

namespace tessel {

inline constexpr UChar32 kReplacement = 0xFFFD;

/// What stands for a control character or a line's end where it must do nothing: its picture (Unicode, "Control
/// Pictures"), or the replacement character. Any other character unchanged.
[[nodiscard]] inline UChar32 withoutControl(UChar32 character)
{
    constexpr UChar32 kNewlinePicture = 0x2424;
    if (character < 0x20)
        return 0x2400 + character;
    if (character == 0x7F)
        return 0x2421;
    if (character == 0x85 || character == 0x2028 || character == 0x2029)
        return kNewlinePicture;
    return u_charType(character) == U_CONTROL_CHAR ? kReplacement : character;
}

} // namespace tessel
