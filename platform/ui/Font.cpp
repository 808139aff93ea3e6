#include "platform/ui/Font.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

namespace tessel {

Font Font::ofStyle(TextStyle style)
{
    switch (style) {
    case TextStyle::Title2:
        return {22, false};
    case TextStyle::Headline:
        return {17, true};
    case TextStyle::Body:
        return {17, false};
    case TextStyle::Subheadline:
        return {15, false};
    case TextStyle::Footnote:
        return {13, false};
    case TextStyle::Caption1:
        return {12, false};
    case TextStyle::Caption2:
        return {11, false};
    }
    return {};
}

Font Font::preferred(TextStyle style)
{
    auto font = ofStyle(style);
    font.size *= platform::installed().device.textScale;
    return font;
}

} // namespace tessel
