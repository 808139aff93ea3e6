#include "platform/qt/AlertButton.h"

#include "platform/ui/AlertController.h"

#include <QJSEngine>

namespace tessel::qt {

AlertButton::AlertButton(const std::shared_ptr<AlertController>& alert, const std::shared_ptr<AlertAction>& action,
                         QObject* parent)
    : QObject(parent), alert_(alert), action_(action)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    sync();
}

QString AlertButton::title() const
{
    const auto action = action_.lock();
    return action ? QString::fromStdString(action->title()) : QString();
}

QString AlertButton::style() const
{
    const auto action = action_.lock();
    if (action && action->style() == AlertAction::Style::Cancel)
        return QStringLiteral("cancel");
    return action && action->style() == AlertAction::Style::Destructive ? QStringLiteral("destructive")
                                                                        : QStringLiteral("default");
}

void AlertButton::sync()
{
    const auto action = action_.lock();
    const bool isEnabled = action && action->enabled();
    if (std::exchange(isEnabled_, isEnabled) != isEnabled)
        emit changed();
}

void AlertButton::press()
{
    const auto alert = alert_.lock();
    const auto action = action_.lock();
    if (alert && action)
        alert->choose(action);
}

} // namespace tessel::qt
