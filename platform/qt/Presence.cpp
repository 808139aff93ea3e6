#include "platform/qt/Presence.h"

#include "platform/ui/ViewController.h"

#include <QJSEngine>

namespace tessel::qt {

Presence::Presence(std::shared_ptr<ViewController> controller, QObject* parent)
    : QObject(parent), controller_(std::move(controller))
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
}

Presence::~Presence() = default;

void Presence::setPhase(Phase phase, bool isAnimated)
{
    if (phase == phase_ && isAnimated == isAnimated_)
        return;
    phase_ = phase;
    isAnimated_ = isAnimated;
    emit phaseChanged();
}

void Presence::finished()
{
    if (phase_ == Entering || phase_ == Leaving)
        emit ended();
}

} // namespace tessel::qt
