#include "platform/console/ScreenElement.h"

namespace tessel {

std::string ScreenElement::text() const
{
    std::string text;
    for (const auto& part : parts) {
        if (&part != &parts.front())
            text += " | ";
        text += part;
    }
    return text;
}

} // namespace tessel
