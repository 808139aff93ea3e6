#include "platform/qt/lists/TagColors.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel::qt {

namespace {

struct NamedColor {
    std::string_view name;
    QRgb color;
};

constexpr NamedColor kColors[] = {{"red", 0xffe5483d},   {"orange", 0xfff08a24}, {"yellow", 0xfff2c12e},
                                  {"green", 0xff4fae50}, {"blue", 0xff3b82e0},   {"purple", 0xff9b5fc9},
                                  {"gray", 0xff8a8d93},  {"grey", 0xff8a8d93}};

} // namespace

QColor tagColor(std::string_view name)
{
    const auto& text = platform::installed().text;
    for (const auto& known : kColors)
        if (text.equalIgnoringCase(known.name, name))
            return QColor(known.color);
    return Qt::transparent;
}

} // namespace tessel::qt
