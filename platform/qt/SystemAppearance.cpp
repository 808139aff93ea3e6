#include "platform/qt/SystemAppearance.h"

#include <QEvent>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace tessel::qt {

namespace {

constexpr double kUsualPointSize = 11; ///< of desktops' fonts: they have 9 to 11 points

double systemTextScale()
{
    bool isGiven = false;
    const auto given = qEnvironmentVariable("TESSELDRIVE_TEXT_SCALE").toDouble(&isGiven);
    const auto wanted = isGiven ? given : QGuiApplication::font().pointSizeF() / kUsualPointSize;
    return std::clamp(wanted, 1.0, 2.0);
}

bool isSystemDark()
{
    if (qEnvironmentVariable("TESSELDRIVE_DARK") == "1")
        return true;
    const auto palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

} // namespace

SystemAppearance::SystemAppearance() : isDark_(isSystemDark()), textScale_(systemTextScale())
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool SystemAppearance::eventFilter(QObject* object, QEvent* event)
{
    if (object != QCoreApplication::instance())
        return false;
    if (event->type() == QEvent::ApplicationFontChange)
        emit fontChanged();
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange)
        read();
    return false;
}

void SystemAppearance::read()
{
    isDark_ = isSystemDark();
    textScale_ = systemTextScale();
    emit changed();
}

} // namespace tessel::qt
