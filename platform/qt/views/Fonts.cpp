#include "platform/qt/views/Fonts.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace tessel::qt {

QFont systemFont(const Font& font)
{
    auto result = QGuiApplication::font();
    result.setPixelSize(std::max(1, static_cast<int>(std::lround(font.size))));
    result.setBold(font.bold);
    return result;
}

} // namespace tessel::qt
