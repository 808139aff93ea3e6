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

bool continuesLine(const Screen& screen, std::size_t index)
{
    return index > 0 && screen[index].key == "toolbar" && screen[index - 1].key == "toolbar";
}

} // namespace tessel
