#include "platform/qt/SystemAppearance.h"

#include "platform/base/Platform.h"
#include "platform/base/Value.h"
#include "platform/cloud/UserDefaults.h"
#include "platform/qt/DesktopSettings.h"

#include <QEvent>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <optional>

namespace tessel::qt {

namespace {

constexpr auto kDarkKey = "PrefersDark"; ///< what the desktop's answer was: true or false
constexpr double kUsualPointSize = 11;   ///< of desktops' fonts: they have 9 to 11 points

double systemTextScale()
{
    bool isGiven = false;
    const auto given = qEnvironmentVariable("TESSELDRIVE_TEXT_SCALE").toDouble(&isGiven);
    const auto wanted = isGiven ? given : QGuiApplication::font().pointSizeF() / kUsualPointSize;
    return std::clamp(wanted, 1.0, 2.0);
}

std::optional<bool> rememberedPreference()
{
    const auto value = platform::installed().defaults.value(kDarkKey);
    const auto* const isDark = value.get<bool>();
    return isDark ? std::optional(*isDark) : std::nullopt;
}

void rememberPreference(std::optional<bool> isDark)
{
    if (rememberedPreference() != isDark)
        platform::installed().defaults.set(kDarkKey, isDark ? Value(*isDark) : Value());
}

bool isSystemDark()
{
    if (qEnvironmentVariableIsSet("TESSELDRIVE_DARK"))
        return qEnvironmentVariable("TESSELDRIVE_DARK") == "1";
    if (const auto preference = rememberedPreference())
        return *preference;
    const auto palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

} // namespace

SystemAppearance::SystemAppearance() : isDark_(isSystemDark()), textScale_(systemTextScale())
{
    QCoreApplication::instance()->installEventFilter(this);
}

SystemAppearance::~SystemAppearance() = default;

void SystemAppearance::followDesktop(const QDBusConnection& bus)
{
    desktop_ = std::make_unique<DesktopSettings>(bus);
    connect(desktop_.get(), &DesktopSettings::changed, this, &SystemAppearance::desktopChanged);
}

void SystemAppearance::desktopChanged()
{
    rememberPreference(desktop_->prefersDark());
    read();
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
